// The bytes of the open file.
#pragma once

#include <cstdint>

#include "osm/FileHandler.hpp"
#include "osm/Progress.hpp"
#include "osm/decode/ByteSource.hpp"

namespace OpenStreetMap {

class FileSource final : public ByteSource {
 public:
  /// `file` and `progress` (which may be empty) must outlive the source.
  FileSource(FileHandler const& file, Progress const& progress)
      : file_(file), progress_(progress) {}

  std::size_t read(char* buffer, std::size_t size) override;

 private:
  FileHandler const& file_;
  Progress const& progress_;
  std::uint64_t position_ = 0;
};

}  // namespace OpenStreetMap
