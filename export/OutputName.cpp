#include "export/OutputName.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "export/BufferedFile.hpp"

namespace {

constexpr mode_t usualFileMode = 0666;
constexpr mode_t usualFolderMode = 0777;
constexpr mode_t allPermissions = 07777;

// Also where a file system lacks the flag.
bool renameAndKeep(char const* from, char const* to) {
  if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
  struct stat status {};
  if (::lstat(to, &status) == 0) {
    errno = EEXIST;
    return false;
  }
  return std::rename(from, to) == 0;
}

// What was there has the other name then, or is gone. A folder that holds something takes two steps
// where a file system can't exchange names.
bool renameAndReplace(char const* from, char const* to) {
  if (std::rename(from, to) == 0) return true;
  if (errno != ENOTEMPTY && errno != EEXIST) return false;
  if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_EXCHANGE) == 0) return true;
  std::error_code error;
  std::filesystem::remove_all(to, error);
  return !error && std::rename(from, to) == 0;
}

}  // namespace

OutputName::OutputName(std::string name, bool overwrite)
    : OutputName(std::move(name), overwrite, S_IFREG, usualFileMode) {}

OutputName::OutputName(std::string name, bool overwrite, std::vector<std::string_view> const& files)
    : OutputName(std::move(name), overwrite, S_IFDIR, usualFolderMode) {
  if (!exists_) return;
  for (auto const& entry : std::filesystem::directory_iterator(path_)) {
    std::string const file = entry.path().filename().string();
    if (std::find(files.begin(), files.end(), file) == files.end()) {
      throw std::runtime_error(path_ + ": holds \"" + file + "\", which would be lost");
    }
  }
}

OutputName::OutputName(std::string name, bool overwrite, unsigned kind, unsigned usualMode)
    : path_(std::move(name)), overwrite_(overwrite) {
  while (path_.size() > 1 && path_.back() == '/') path_.pop_back();
  struct stat status {};
  exists_ = ::stat(path_.c_str(), &status) == 0;
  if (!exists_) {
    if (::lstat(path_.c_str(), &status) == 0) {
      throw std::runtime_error(path_ + ": is a symbolic link to nothing");
    }
    // What is unfinished is private; this is the mode that a plainly made one would have.
    mode_t const mask = ::umask(0);
    ::umask(mask);
    mode_ = usualMode & ~mask;
    return;
  }
  if ((status.st_mode & S_IFMT) != kind) {
    throw std::runtime_error(path_ + (S_ISDIR(status.st_mode) ? ": is a directory"
                                      : kind == S_IFDIR       ? ": is not a directory"
                                                              : ": is not a regular file"));
  }
  if (!overwrite_) throw std::runtime_error(path_ + ": exists already; --overwrite replaces it");
  path_ = std::filesystem::canonical(path_).string();
  mode_ = status.st_mode & allPermissions;
}

void OutputName::give(std::string const& complete) const {
  auto const rename = overwrite_ ? renameAndReplace : renameAndKeep;
  if (::chmod(complete.c_str(), mode_) != 0 || !rename(complete.c_str(), path_.c_str())) {
    throwCantWrite(path_);
  }
}
