// Unpacks a bzip2 file: any number of streams, one after the other, are one. Anything else after a
// stream is refused, as are wrong checksums.
#pragma once

#include <bzlib.h>

#include <array>
#include <cstdint>

#include "osm/decode/ByteSource.hpp"

namespace OpenStreetMap {

class Bzip2Source final : public ByteSource {
 public:
  explicit Bzip2Source(ByteSource& packed);
  ~Bzip2Source() override;

  std::size_t read(char* buffer, std::size_t size) override;

 private:
  void start();
  bool refill();
  [[noreturn]] void fail(char const* reason) const;

  ByteSource& packed_;
  bz_stream stream_{};
  std::uint64_t packedBytes_ = 0;  // read from `packed_` so far
  bool finished_ = false;
  std::array<char, 64 * 1024> input_;
};

}  // namespace OpenStreetMap
