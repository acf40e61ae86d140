// A stream of bytes that are in memory.
#pragma once

#include <cstddef>
#include <string_view>

#include "osm/decode/ByteSource.hpp"

/// Hands out at most `piece` bytes at a time.
class MemorySource final : public OpenStreetMap::ByteSource {
 public:
  explicit MemorySource(std::string_view bytes, std::size_t piece = 64 * 1024)
      : bytes_(bytes), piece_(piece) {}

  std::size_t read(char* buffer, std::size_t size) override {
    std::size_t const count = bytes_.copy(buffer, size < piece_ ? size : piece_);
    bytes_.remove_prefix(count);
    return count;
  }

 private:
  std::string_view bytes_;
  std::size_t piece_;
};
