#include "export/OutputFile.hpp"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace {

constexpr std::size_t bufferSize = std::size_t{256} * 1024;
constexpr mode_t usualMode = 0666;
constexpr mode_t allPermissions = 07777;

// The temporary files that an interrupt has to remove.
std::array<std::atomic<char const*>, 8> unfinished{};

void replaceUnfinished(char const* before, char const* after) {
  for (std::atomic<char const*>& slot : unfinished) {
    char const* expected = before;
    if (slot.compare_exchange_strong(expected, after)) return;
  }
}

extern "C" void removeUnfinished(int signal) {
  for (char const* const path : unfinished) {
    if (path != nullptr) ::unlink(path);
  }
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

bool exists(std::string const& name, struct stat& status) {
  return ::stat(name.c_str(), &status) == 0;
}

}  // namespace

OutputFile::OutputFile(std::string name, bool overwrite)
    : name_(std::move(name)), overwrite_(overwrite) {
  buffer_.reserve(bufferSize);
  struct stat status {};
  if (name_ == "-") {
    descriptor_ = STDOUT_FILENO;
    return;
  }
  if (exists(name_, status)) {
    if (S_ISDIR(status.st_mode)) throw std::runtime_error(name_ + ": is a directory");
    if (!S_ISREG(status.st_mode)) {
      descriptor_ = ::open(name_.c_str(), O_WRONLY | O_CLOEXEC);
      if (descriptor_ < 0) fail();
      return;
    }
    if (!overwrite_) {
      throw std::runtime_error(name_ + ": exists already; --overwrite replaces it");
    }
    name_ = std::filesystem::canonical(name_).string();  // what a link leads to, not the link
    mode_ = status.st_mode & allPermissions;
  } else if (::lstat(name_.c_str(), &status) == 0) {
    throw std::runtime_error(name_ + ": is a symbolic link to nothing");
  } else {
    // A temporary file is private; this is the mode that a plainly made file would have.
    mode_t const mask = ::umask(0);
    ::umask(mask);
    mode_ = usualMode & ~mask;
  }
  temporary_ = std::filesystem::path(name_).replace_filename(".osm2roadnet-XXXXXX").string();
  descriptor_ = ::mkostemp(temporary_.data(), O_CLOEXEC);
  if (descriptor_ < 0) {
    temporary_.clear();
    fail();
  }
  replaceUnfinished(nullptr, temporary_.c_str());
  std::signal(SIGXFSZ, SIG_IGN);  // a write beyond the limit then fails like any other
  for (int const signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    if (std::signal(signal, removeUnfinished) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

OutputFile::~OutputFile() {
  if (descriptor_ > STDOUT_FILENO) ::close(descriptor_);
  if (temporary_.empty()) return;
  replaceUnfinished(temporary_.c_str(), nullptr);
  ::unlink(temporary_.c_str());
}

void OutputFile::write(std::string_view bytes) {
  if (buffer_.size() + bytes.size() > bufferSize) flush();
  buffer_ += bytes;
}

void OutputFile::commit() {
  flush();
  if (temporary_.empty()) return;
  if (::fchmod(descriptor_, mode_) != 0) fail();
  if (::close(std::exchange(descriptor_, -1)) != 0) fail();
  if (!takeName()) fail();
  replaceUnfinished(temporary_.c_str(), nullptr);
  temporary_.clear();
}

// Without --overwrite, a file that has come into being meanwhile is kept.
bool OutputFile::takeName() const {
  char const* const from = temporary_.c_str();
  char const* const to = name_.c_str();
  if (overwrite_) return std::rename(from, to) == 0;
  if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  return ::link(from, to) == 0 && ::unlink(from) == 0;  // a file system without the former
}

void OutputFile::flush() {
  char const* rest = buffer_.data();
  std::size_t size = buffer_.size();
  while (size > 0) {
    ssize_t const count = ::write(descriptor_, rest, size);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail();
    rest += count;
    size -= static_cast<std::size_t>(count);
  }
  buffer_.clear();
}

void OutputFile::fail() const {
  throw std::runtime_error((name_ == "-" ? "standard output" : name_) +
                           ": can't write: " + std::generic_category().message(errno));
}
