#include "osm/decode/FileSource.hpp"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string>
#include <system_error>

#include "osm/decode/DecodeError.hpp"

namespace OpenStreetMap {

FileSource::FileSource(FileHandler const& file, support::Steps& steps, std::uint64_t begin,
                       std::uint64_t end)
    : file_(file), steps_(steps), position_(begin), end_(end) {
  ::lseek(file.descriptor, static_cast<off_t>(begin), SEEK_SET);
}

std::size_t FileSource::skip(std::size_t size) {
  auto const there = std::min<std::uint64_t>(end_, file_.size);
  size = static_cast<std::size_t>(
      std::min<std::uint64_t>(size, there < position_ ? 0 : there - position_));
  position_ += size;
  ::lseek(file_.descriptor, static_cast<off_t>(position_), SEEK_SET);
  return size;
}

std::size_t FileSource::read(char* buffer, std::size_t size) {
  size = static_cast<std::size_t>(std::min<std::uint64_t>(size, end_ - position_));
  if (size == 0) return 0;
  ssize_t count = 0;
  do {
    count = ::read(file_.descriptor, buffer, size);
  } while (count < 0 && errno == EINTR);
  if (count < 0) {
    throw DecodeError{"byte " + std::to_string(position_),
                      "can't read: " + std::generic_category().message(errno)};
  }
  position_ += static_cast<std::uint64_t>(count);
  // How long a stream is turns out at its end; a file may grow or shrink meanwhile.
  bool const isLonger = file_.size != 0 && position_ > file_.size;
  steps_.reach(position_, count == 0 || isLonger ? position_ : file_.size);
  return static_cast<std::size_t>(count);
}

}  // namespace OpenStreetMap
