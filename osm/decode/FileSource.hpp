// The bytes of the open file.
#pragma once

#include <cstdint>
#include <limits>

#include "osm/FileHandler.hpp"
#include "osm/decode/ByteSource.hpp"
#include "support/Progress.hpp"

namespace OpenStreetMap {

class FileSource final : public ByteSource {
 public:
  /// `file` and `steps`, which are bytes, must outlive the source.
  FileSource(FileHandler const& file, support::Steps& steps) : file_(file), steps_(steps) {}
  /// The bytes from `begin` up to `end` of a regular file, if it has as many.
  FileSource(FileHandler const& file, support::Steps& steps, std::uint64_t begin,
             std::uint64_t end);

  std::size_t read(char* buffer, std::size_t size) override;
  std::size_t skip(std::size_t size) override;

 private:
  FileHandler const& file_;
  support::Steps& steps_;
  std::uint64_t position_ = 0;
  std::uint64_t end_ = std::numeric_limits<std::uint64_t>::max();
};

}  // namespace OpenStreetMap
