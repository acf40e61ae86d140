#include "osm/decode/GzipSource.hpp"

#include <algorithm>
#include <limits>
#include <new>
#include <string>

#include "osm/decode/DecodeError.hpp"

namespace OpenStreetMap {

GzipSource::GzipSource(ByteSource& packed) : packed_(packed) {
  constexpr int gzipOnly = 16;
  if (inflateInit2(&stream_, MAX_WBITS + gzipOnly) != Z_OK) throw std::bad_alloc();
}

GzipSource::~GzipSource() {
  inflateEnd(&stream_);
}

std::size_t GzipSource::read(char* buffer, std::size_t size) {
  auto const room =
      static_cast<uInt>(std::min<std::size_t>(size, std::numeric_limits<uInt>::max()));
  stream_.next_out = reinterpret_cast<Bytef*>(buffer);
  stream_.avail_out = room;
  while (!finished_ && stream_.avail_out == room) {
    // zlib reads the trailer of each member, too: a wrong checksum or length is Z_DATA_ERROR.
    if (stream_.avail_in == 0 && !refill()) fail("the gzip stream is cut short");
    int const status = inflate(&stream_, Z_NO_FLUSH);
    if (status == Z_STREAM_END) {
      finished_ = !startNextMember();
    } else if (status == Z_MEM_ERROR) {
      throw std::bad_alloc();
    } else if (status != Z_OK && status != Z_BUF_ERROR) {  // the latter only wants more bytes
      fail(stream_.msg != nullptr ? stream_.msg : "the gzip stream is damaged");
    }
  }
  return room - stream_.avail_out;
}

bool GzipSource::refill() {
  std::size_t const count = packed_.read(reinterpret_cast<char*>(input_.data()), input_.size());
  packedBytes_ += count;
  stream_.next_in = input_.data();
  stream_.avail_in = static_cast<uInt>(count);
  return count > 0;
}

// Returns false at the end of the file, padding included.
bool GzipSource::startNextMember() {
  if (stream_.avail_in == 0 && !refill()) return false;
  if (*stream_.next_in != 0) {
    inflateReset(&stream_);
    return true;
  }
  do {
    unsigned char const* const end = stream_.next_in + stream_.avail_in;
    unsigned char const* const junk =
        std::find_if(static_cast<unsigned char const*>(stream_.next_in), end,
                     [](unsigned char byte) { return byte != 0; });
    stream_.avail_in = static_cast<uInt>(end - junk);
    if (junk != end) fail("there is something after the end of the gzip stream");
  } while (refill());
  return false;
}

void GzipSource::fail(char const* reason) const {
  throw DecodeError{"byte " + std::to_string(packedBytes_ - stream_.avail_in),
                    std::string("gzip: ") + reason};
}

}  // namespace OpenStreetMap
