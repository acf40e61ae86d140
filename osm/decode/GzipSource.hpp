// Unpacks a gzip file (RFC 1952): any number of members, one after the other, are one stream. Zero
// bytes after the last member are padding; anything else there is refused, as are wrong checksums.
#pragma once

#include <zlib.h>

#include <array>
#include <cstdint>

#include "osm/decode/ByteSource.hpp"

namespace OpenStreetMap {

class GzipSource final : public ByteSource {
 public:
  explicit GzipSource(ByteSource& packed);
  ~GzipSource() override;

  std::size_t read(char* buffer, std::size_t size) override;

 private:
  bool refill();
  bool startNextMember();
  [[noreturn]] void fail(char const* reason) const;

  ByteSource& packed_;
  z_stream stream_{};
  std::uint64_t packedBytes_ = 0;  // read from `packed_` so far
  bool finished_ = false;
  std::array<unsigned char, 64 * 1024> input_;
};

}  // namespace OpenStreetMap
