#include "osm/decode/FileSource.hpp"

#include <unistd.h>

#include <cerrno>
#include <string>
#include <system_error>

#include "osm/decode/DecodeError.hpp"

namespace OpenStreetMap {

std::size_t FileSource::read(char* buffer, std::size_t size) {
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
