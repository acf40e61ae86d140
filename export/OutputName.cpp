#include "export/OutputName.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "export/BufferedFile.hpp"
#include "export/Temporary.hpp"

namespace {

constexpr mode_t usualFileMode = 0666;
constexpr mode_t usualFolderMode = 0777;
constexpr mode_t allPermissions = 07777;

// Whether the file system lacks what renameat2 was asked to do.
bool isUnsupported(int error) {
  return error == EINVAL || error == ENOSYS;
}

bool rename(char const* from, char const* to, unsigned flags) {
  return ::renameat2(AT_FDCWD, from, AT_FDCWD, to, flags) == 0;
}

// Also where a file system lacks the flag.
bool renameAndKeep(char const* from, char const* to) {
  if (rename(from, to, RENAME_NOREPLACE)) return true;
  if (!isUnsupported(errno)) return false;
  struct stat status {};
  if (::lstat(to, &status) == 0) {
    errno = EEXIST;
    return false;
  }
  return rename(from, to, 0);
}

// Some file systems give all files one owner and mode, and let nobody change them.
bool setMode(char const* path, mode_t mode) {
  return ::chmod(path, mode) == 0 || errno == EPERM;
}

}  // namespace

OutputName::OutputName(std::string name, bool overwrite)
    : OutputName(std::move(name), overwrite, S_IFREG, usualFileMode) {}

OutputName::OutputName(std::string const& name, bool overwrite,
                       std::span<std::string_view const> files)
    : OutputName(name.substr(0, std::max(name.find_last_not_of('/') + 1, std::size_t{1})),
                 overwrite, S_IFDIR, usualFolderMode) {
  files_.assign(files.begin(), files.end());
  if (!exists_) return;
  refuseOtherFiles(path_);
  if (::access(path_.c_str(), W_OK | X_OK) != 0) throwCantWrite(name_);
}

OutputName::OutputName(std::string name, bool overwrite, unsigned kind, unsigned usualMode)
    : name_(std::move(name)), path_(name_), overwrite_(overwrite) {
  struct stat status {};
  exists_ = ::stat(path_.c_str(), &status) == 0;
  if (!exists_) {
    if (errno != ENOENT) throwCantWrite(name_);
    if (::lstat(path_.c_str(), &status) == 0) fail("is a symbolic link to nothing");
    // What is unfinished is private; this is the mode that a plainly made one would have.
    mode_t const mask = ::umask(0);
    ::umask(mask);
    mode_ = usualMode & ~mask;
    return;
  }
  if ((status.st_mode & S_IFMT) != kind) {
    if (S_ISDIR(status.st_mode)) fail("is a directory");
    fail(kind == S_IFDIR ? "is not a directory" : "is not a regular file");
  }
  if (!overwrite_) fail("exists already; --overwrite replaces it");
  path_ = std::filesystem::canonical(path_).string();
  mode_ = status.st_mode & allPermissions;
}

void OutputName::give(std::string const& complete) const {
  files_.empty() ? giveToFile(complete.c_str()) : giveToFolder(complete.c_str());
}

void OutputName::giveToFile(char const* complete) const {
  bool const isReady = setMode(complete, mode_);
  char const* const path = path_.c_str();
  if (!isReady || !(overwrite_ ? rename(complete, path, 0) : renameAndKeep(complete, path))) {
    throwCantWrite(name_);
  }
}

void OutputName::giveToFolder(char const* complete) const {
  char const* const path = path_.c_str();
  if (!exists_) {
    if (!renameAndKeep(complete, path)) throwCantWrite(name_);
  } else {
    InterruptsBlocked const blocked;  // they remove what is called `complete`
    if (!rename(complete, path, RENAME_EXCHANGE)) {
      if (isUnsupported(errno)) fail("can't be replaced on this file system; remove it first");
      throwCantWrite(name_);
    }
    try {
      refuseOtherFiles(complete);
    } catch (...) {
      rename(complete, path, RENAME_EXCHANGE);
      throw;
    }
  }
  // Last: what is not writable could not be removed if anything failed.
  if (!setMode(path, mode_)) throwCantWrite(name_);
}

void OutputName::refuseOtherFiles(std::string const& folder) const {
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    std::string const file = entry->path().filename().string();
    bool const isOurs = std::find(files_.begin(), files_.end(), file) != files_.end();
    if (!isOurs || entry->symlink_status(error).type() == std::filesystem::file_type::directory) {
      fail("holds \"" + file + "\", which would be lost");
    }
  }
  if (error) fail("can't read: " + error.message());
}

void OutputName::fail(std::string const& reason) const {
  throw std::runtime_error(name_ + ": " + reason);
}
