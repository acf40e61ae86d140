#include "export/Temporary.hpp"

#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <utility>

#include "export/BufferedFile.hpp"

namespace {

// What an interrupt has to remove.
std::array<std::atomic<char const*>, 8> unfinished{};

void replaceUnfinished(char const* before, char const* after) noexcept {
  for (std::atomic<char const*>& slot : unfinished) {
    char const* expected = before;
    if (slot.compare_exchange_strong(expected, after)) return;
  }
}

// Removes the files that a folder holds. Calls nothing that a signal handler may not.
void empty(int folder) noexcept {
  alignas(dirent64) char entries[4096];
  for (bool removed = true; removed;) {
    removed = false;
    ::lseek(folder, 0, SEEK_SET);
    for (ssize_t size; (size = ::getdents64(folder, entries, sizeof entries)) > 0;) {
      for (ssize_t at = 0; at < size;) {
        auto const* const entry = reinterpret_cast<dirent64 const*>(entries + at);
        if (::unlinkat(folder, entry->d_name, 0) == 0) removed = true;
        at += entry->d_reclen;
      }
    }
  }
}

void removePath(char const* path) noexcept {
  if (::unlink(path) == 0 || errno != EISDIR) return;
  int const folder = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) {
    empty(folder);
    ::close(folder);
  }
  ::rmdir(path);
}

extern "C" void removeUnfinished(int signal) {
  for (char const* const path : unfinished) {
    if (path != nullptr) removePath(path);
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

constexpr std::array interrupts{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE};

// What mkostemp and mkdtemp make a name of.
std::string patternBeside(std::string const& name) {
  return std::filesystem::path(name).replace_filename(".osm2roadnet-XXXXXX").string();
}

}  // namespace

InterruptsBlocked::InterruptsBlocked() {
  sigset_t signals;
  sigemptyset(&signals);
  for (int const signal : interrupts) sigaddset(&signals, signal);
  ::pthread_sigmask(SIG_BLOCK, &signals, &before_);
}

InterruptsBlocked::~InterruptsBlocked() {
  ::pthread_sigmask(SIG_SETMASK, &before_, nullptr);
}

int Temporary::makeFile(std::string const& name) {
  InterruptsBlocked const blocked;
  std::string path = patternBeside(name);
  int const descriptor = ::mkostemp(path.data(), O_CLOEXEC);
  if (descriptor < 0) throwCantWrite(name);
  path_ = std::move(path);
  registerPath();
  return descriptor;
}

void Temporary::makeFolder(std::string const& name) {
  InterruptsBlocked const blocked;
  std::string path = patternBeside(name);
  if (::mkdtemp(path.data()) == nullptr) throwCantWrite(name);
  path_ = std::move(path);
  registerPath();
}

void Temporary::registerPath() {
  replaceUnfinished(nullptr, path_.c_str());
  std::signal(SIGXFSZ, SIG_IGN);  // a write beyond the limit then fails like any other
  for (int const signal : interrupts) {
    if (std::signal(signal, removeUnfinished) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

Temporary::~Temporary() {
  if (path_.empty()) return;
  removePath(path_.c_str());
  replaceUnfinished(path_.c_str(), nullptr);
}
