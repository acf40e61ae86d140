#include "export/Temporary.hpp"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <filesystem>
#include <utility>

#include "export/endingSignals.hpp"
#include "export/forEachEntry.hpp"
#include "export/throwCantWrite.hpp"

namespace {

std::array<std::atomic<char const*>, 8> unfinished{};

void replaceUnfinished(char const* before, char const* after) noexcept {
  for (std::atomic<char const*>& slot : unfinished) {
    char const* expected = before;
    if (slot.compare_exchange_strong(expected, after)) return;
  }
}

void removeFiles(int folder) noexcept {
  for (bool removed = true; removed;) {  // while files go, entries may be passed over
    removed = false;
    forEachEntry(folder, [&](char const* name) {
      if (::unlinkat(folder, name, 0) == 0) removed = true;
    });
  }
}

void removePath(char const* path) noexcept {
  if (::unlink(path) == 0 || errno != EISDIR) return;
  int const folder = ::open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (folder >= 0) {
    removeFiles(folder);
    ::close(folder);
  }
  ::rmdir(path);
}

// What mkostemp and mkdtemp make a name of.
std::string patternBeside(std::string const& name) {
  return std::filesystem::path(name).replace_filename(".osm2roadnet-XXXXXX").string();
}

}  // namespace

int Temporary::makeFile(std::string const& name) {
  std::string path = patternBeside(name);
  SignalsBlocked const blocked;  // until they know what to remove
  int const descriptor = ::mkostemp(path.data(), O_CLOEXEC);
  if (descriptor < 0) throwCantWrite(name);
  take(std::move(path));
  return descriptor;
}

void Temporary::makeFolder(std::string const& name) {
  std::string path = patternBeside(name);
  SignalsBlocked const blocked;
  if (::mkdtemp(path.data()) == nullptr) throwCantWrite(name);
  take(std::move(path));
  folder_ = ::open(path_.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (folder_ < 0) throwCantWrite(name);
}

void Temporary::take(std::string&& path) noexcept {
  path_ = std::move(path);
  replaceUnfinished(nullptr, path_.c_str());
}

void Temporary::removeAll() noexcept {
  for (char const* const path : unfinished) {
    if (path != nullptr) removePath(path);
  }
}

Temporary::~Temporary() {
  if (folder_ >= 0) ::close(folder_);
  if (path_.empty()) return;
  removePath(path_.c_str());
  replaceUnfinished(path_.c_str(), nullptr);
}
