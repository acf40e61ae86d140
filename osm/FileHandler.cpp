#include "osm/FileHandler.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "osm/ReadError.hpp"
#include "support/ustring.hpp"

namespace OpenStreetMap {
namespace {

struct stat statusOf(FileHandler const& file) {
  struct stat status {};
  if (file.descriptor < 0 || ::fstat(file.descriptor, &status) != 0) {
    throw ReadError(file.name, "", "can't open: " + std::generic_category().message(errno));
  }
  if (S_ISDIR(status.st_mode)) throw ReadError(file.name, "", "is a directory");
  return status;
}

}  // namespace

void FileHandlerDeleter::operator()(FileHandler* file) const noexcept {
  ::close(file->descriptor);
  delete file;
}

FileHandle openFile(std::u16string const& path) {
  std::string const name = support::ustring_to_utf8(path);
  if (support::to_ustring(name) != path) {
    throw ReadError(name, "", "the file name is not well-formed UTF-16");
  }
  return openFile(name);
}

FileHandle openFile(std::string const& path) {
  if (path.find('\0') != std::string::npos) {
    throw ReadError(path, "", "the file name contains a NUL character");
  }
  FileHandle file(new FileHandler{-1, 0, path});
  // Without O_NONBLOCK the mere opening of a pipe could wait forever.
  file->descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  struct stat const status = statusOf(*file);
  if (!S_ISREG(status.st_mode)) throw ReadError(path, "", "is not a regular file");
  file->size = static_cast<std::uint64_t>(status.st_size);
  return file;
}

FileHandle useOpenFile(int descriptor, std::string const& name) {
  FileHandle file(new FileHandler{-1, 0, name});
  file->descriptor = ::fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  struct stat const status = statusOf(*file);
  if (S_ISREG(status.st_mode)) {
    off_t const offset = ::lseek(file->descriptor, 0, SEEK_CUR);
    file->size = static_cast<std::uint64_t>(std::max<off_t>(status.st_size - offset, 0));
  }
  return file;
}

}  // namespace OpenStreetMap
