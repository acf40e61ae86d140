#include "osm/decode/PbfBlob.hpp"

#include <libdeflate.h>
#include <lz4.h>
#include <zstd.h>
#include <zstd_errors.h>

#include <new>
#include <optional>
#include <string>

#include "osm/decode/pbfFieldNumbers.hpp"
#include "osm/decode/pbfFields.hpp"

namespace OpenStreetMap {

void PbfBlobUnpacker::FreeDecompressor::operator()(
    libdeflate_decompressor* decompressor) const noexcept {
  libdeflate_free_decompressor(decompressor);
}

PbfBlobUnpacker::PbfBlobUnpacker() : zlib_(libdeflate_alloc_decompressor()) {
  if (!zlib_) throw std::bad_alloc();
}

std::string_view PbfBlobUnpacker::unpack(std::string_view blob) {
  std::optional<std::int32_t> size;
  std::optional<BlobField> kind;
  std::string_view data;
  pbf::pbf_reader fields(blob.data(), blob.size());
  while (fields.next()) {
    switch (BlobField{fields.tag()}) {
      case BlobField::rawSize:
        size = pbf::int32(fields);
        break;
      case BlobField::raw:
      case BlobField::zlibData:
      case BlobField::lzmaData:
      case BlobField::bzip2Data:
      case BlobField::lz4Data:
      case BlobField::zstdData:
        if (kind) throw pbf::InvalidData("the blob holds its data twice");
        kind = BlobField{fields.tag()};
        data = pbf::bytes(fields);
        break;
      default:
        fields.skip();
    }
  }
  if (!kind) throw pbf::InvalidData("the blob holds no data");
  if (*kind == BlobField::raw) return data;
  if (*kind == BlobField::lzmaData) throw pbf::InvalidData("lzma compression is not supported");
  if (*kind == BlobField::bzip2Data) throw pbf::InvalidData("bzip2 compression is not supported");
  if (!size) throw pbf::InvalidData("the compressed blob does not say how large its data is");
  if (*size < 0 || static_cast<std::size_t>(*size) > maxBlobSize) {
    throw pbf::InvalidData("the blob claims " + std::to_string(*size) +
                           " bytes of data; the format allows 32 MiB");
  }
  buffer_.resize(static_cast<std::size_t>(*size));
  switch (*kind) {
    case BlobField::zlibData:
      unpackZlib(data);
      break;
    case BlobField::lz4Data:
      unpackLz4(data);
      break;
    default:
      unpackZstd(data);
  }
  return {buffer_.data(), buffer_.size()};
}

void PbfBlobUnpacker::unpackZlib(std::string_view packed) {
  std::size_t used = 0;
  std::size_t written = 0;
  libdeflate_result const result = libdeflate_zlib_decompress_ex(
      zlib_.get(), packed.data(), packed.size(), buffer_.data(), buffer_.size(), &used, &written);
  if (result == LIBDEFLATE_INSUFFICIENT_SPACE) {
    throw pbf::InvalidData("the blob unpacks to more than it claims");
  }
  if (result != LIBDEFLATE_SUCCESS || used != packed.size()) {
    throw pbf::InvalidData("the zlib stream is damaged");
  }
  if (written != buffer_.size()) throw pbf::InvalidData("the blob unpacks to less than it claims");
}

void PbfBlobUnpacker::unpackLz4(std::string_view packed) {
  int const written =
      LZ4_decompress_safe(packed.data(), buffer_.data(), static_cast<int>(packed.size()),
                          static_cast<int>(buffer_.size()));
  if (written < 0 || static_cast<std::size_t>(written) != buffer_.size()) {
    throw pbf::InvalidData("the lz4 block is damaged or not as large as it claims");
  }
}

void PbfBlobUnpacker::unpackZstd(std::string_view packed) {
  std::size_t const written =
      ZSTD_decompress(buffer_.data(), buffer_.size(), packed.data(), packed.size());
  if (ZSTD_getErrorCode(written) == ZSTD_error_memory_allocation) throw std::bad_alloc();
  if (ZSTD_isError(written) != 0) {
    throw pbf::InvalidData(std::string("zstd: ") + ZSTD_getErrorName(written));
  }
  if (written != buffer_.size()) throw pbf::InvalidData("the blob unpacks to less than it claims");
}

}  // namespace OpenStreetMap
