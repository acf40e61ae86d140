#include "osm/decode/Bzip2Source.hpp"

#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include "osm/decode/DecodeError.hpp"

namespace OpenStreetMap {

Bzip2Source::Bzip2Source(ByteSource& packed) : packed_(packed) {
  start();
}

Bzip2Source::~Bzip2Source() {
  BZ2_bzDecompressEnd(&stream_);
}

void Bzip2Source::start() {
  if (BZ2_bzDecompressInit(&stream_, 0, 0) != BZ_OK) throw std::bad_alloc();
}

std::size_t Bzip2Source::read(char* buffer, std::size_t size) {
  auto const room =
      static_cast<unsigned>(std::min<std::size_t>(size, std::numeric_limits<unsigned>::max()));
  stream_.next_out = buffer;
  stream_.avail_out = room;
  while (!finished_ && stream_.avail_out == room) {
    if (stream_.avail_in == 0 && !refill()) fail("the bzip2 stream is cut short");
    switch (BZ2_bzDecompress(&stream_)) {  // which compares the checksums, too
      case BZ_OK:
        break;
      case BZ_STREAM_END:
        if (stream_.avail_in == 0 && !refill()) {
          finished_ = true;
        } else {
          BZ2_bzDecompressEnd(&stream_);
          start();
        }
        break;
      case BZ_MEM_ERROR:
        throw std::bad_alloc();
      case BZ_DATA_ERROR_MAGIC:
        fail("this is not the start of a bzip2 stream");
      default:
        fail("the bzip2 stream is damaged");
    }
  }
  return room - stream_.avail_out;
}

bool Bzip2Source::refill() {
  std::size_t const count = packed_.read(input_.data(), input_.size());
  packedBytes_ += count;
  stream_.next_in = input_.data();
  stream_.avail_in = static_cast<unsigned>(count);
  return count > 0;
}

void Bzip2Source::fail(char const* reason) const {
  throw DecodeError{"byte " + std::to_string(packedBytes_ - stream_.avail_in),
                    std::string("bzip2: ") + reason};
}

}  // namespace OpenStreetMap
