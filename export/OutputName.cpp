#include "export/OutputName.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "export/endingSignals.hpp"
#include "export/forEachEntry.hpp"
#include "export/throwCantWrite.hpp"

namespace {

constexpr mode_t usualFileMode = 0666;
constexpr mode_t usualFolderMode = 0777;
constexpr mode_t permissions = 0777;  // without set-user-id and the like

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

}  // namespace

// The first in a folder that may not be replaced, or why that can't be told.
struct OutputName::OtherFile {
  char name[NAME_MAX + 1] = "";
  int error = 0;

  bool isThere() const { return *name != '\0' || error != 0; }
};

OutputName::OutputName(std::string name, bool overwrite)
    : OutputName(std::move(name), overwrite, S_IFREG, usualFileMode) {}

OutputName::OutputName(std::string const& name, bool overwrite,
                       std::span<std::string_view const> files)
    : OutputName(name.substr(0, std::max(name.find_last_not_of('/') + 1, std::size_t{1})),
                 overwrite, S_IFDIR, usualFolderMode) {
  files_.assign(files.begin(), files.end());
  if (!exists_) return;
  // Whoever stands in it would stay in what it was before, and see nothing of the output.
  std::error_code error;
  if (std::filesystem::equivalent(path_, ".", error)) {
    fail("is the current folder, which can't be replaced");
  }
  OtherFile const other = otherFileIn(path_.c_str());
  if (other.isThere()) failBecauseOf(other);
  if (!overwrite && !std::filesystem::is_empty(path_)) failBecauseItExists();
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
  if (!overwrite_ && kind != S_IFDIR) failBecauseItExists();
  path_ = std::filesystem::canonical(path_).string();
  mode_ = status.st_mode & permissions;
}

void OutputName::setMode(int descriptor, char const* fileInIt) const {
  bool const isSet = fileInIt == nullptr ? ::fchmod(descriptor, mode_) == 0
                                         : ::fchmodat(descriptor, fileInIt, mode_, 0) == 0;
  // Some file systems give all files one owner and mode, and let nobody change them.
  if (!isSet && errno != EPERM) throwCantWrite(name_);
}

void OutputName::give(std::string const& complete) const {
  files_.empty() ? giveToFile(complete.c_str()) : giveToFolder(complete.c_str());
}

void OutputName::giveToFile(char const* complete) const {
  char const* const path = path_.c_str();
  if (!(overwrite_ ? rename(complete, path, 0) : renameAndKeep(complete, path))) {
    throwCantWrite(name_);
  }
}

void OutputName::giveToFolder(char const* complete) const {
  char const* const path = path_.c_str();
  if (!exists_ || !overwrite_) {  // a folder that is there must be empty for this to work
    if (!(exists_ ? rename(complete, path, 0) : renameAndKeep(complete, path))) {
      throwCantWrite(name_);
    }
    return;
  }
  // Between the two exchanges, whatever ends the program would remove the folder that was there.
  SignalsBlocked const blocked;
  if (!rename(complete, path, RENAME_EXCHANGE)) {
    if (isUnsupported(errno)) fail("can't be replaced on this file system; remove it first");
    throwCantWrite(name_);
  }
  OtherFile const other = otherFileIn(complete);
  if (!other.isThere()) return;
  rename(complete, path, RENAME_EXCHANGE);
  failBecauseOf(other);
}

// Allocates nothing: it is called where the program must not end.
OutputName::OtherFile OutputName::otherFileIn(char const* folder) const {
  OtherFile other;
  int const descriptor = ::open(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  bool const isRead = descriptor >= 0 && forEachEntry(descriptor, [&](char const* name) {
                        std::string_view const file(name);
                        if (other.isThere() || file == "." || file == "..") return;
                        struct stat status {};
                        bool const isOurs =
                            std::find(files_.begin(), files_.end(), file) != files_.end() &&
                            ::fstatat(descriptor, name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
                            !S_ISDIR(status.st_mode);
                        if (!isOurs) file.copy(other.name, NAME_MAX);
                      });
  if (!isRead) other.error = errno;
  if (descriptor >= 0) ::close(descriptor);
  return other;
}

void OutputName::failBecauseItExists() const {
  fail("exists already; --overwrite replaces it");
}

void OutputName::failBecauseOf(OtherFile const& other) const {
  if (other.error != 0) fail("can't read: " + std::generic_category().message(other.error));
  fail("holds \"" + std::string(other.name) + "\", which would be lost");
}

void OutputName::fail(std::string const& reason) const {
  throw std::runtime_error(name_ + ": " + reason);
}
