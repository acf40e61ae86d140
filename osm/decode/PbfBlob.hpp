// Unpacks the Blob message that wraps each block of a PBF file.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

struct libdeflate_decompressor;

namespace OpenStreetMap {

/// No blob may be larger than this, packed or unpacked.
inline constexpr std::size_t maxBlobSize = std::size_t{32} * 1024 * 1024;

class PbfBlobUnpacker {
 public:
  PbfBlobUnpacker();

  /// The data of a Blob: stored as it is or packed with zlib, lz4 or zstd. The result points into
  /// `blob` or into this object, and holds until the next call. Throws pbf::InvalidData and
  /// protozero::exception.
  std::string_view unpack(std::string_view blob);

 private:
  struct FreeDecompressor {
    void operator()(libdeflate_decompressor* decompressor) const noexcept;
  };

  void unpackZlib(std::string_view packed);
  void unpackLz4(std::string_view packed);
  void unpackZstd(std::string_view packed);

  std::unique_ptr<libdeflate_decompressor, FreeDecompressor> zlib_;
  std::vector<char> buffer_;  // as large as the Blob says that its data is
};

}  // namespace OpenStreetMap
