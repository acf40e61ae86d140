#include "osm/decode/PbfBlob.hpp"

#include <libdeflate.h>
#include <lz4.h>
#include <zstd.h>
#include <zstd_errors.h>

#include <new>
#include <optional>
#include <string>

#include "osm/decode/pbfFields.hpp"

namespace OpenStreetMap {
namespace {

// The fields of a Blob. Its data stands in exactly one of those from 3 on, or in `raw`.
enum BlobField : protozero::pbf_tag_type {
  raw = 1,
  rawSize = 2,
  zlibData = 3,
  lzmaData = 4,
  bzip2Data = 5,
  lz4Data = 6,
  zstdData = 7,
};

}  // namespace

void PbfBlobUnpacker::FreeDecompressor::operator()(
    libdeflate_decompressor* decompressor) const noexcept {
  libdeflate_free_decompressor(decompressor);
}

PbfBlobUnpacker::PbfBlobUnpacker() : zlib_(libdeflate_alloc_decompressor()) {
  if (!zlib_) throw std::bad_alloc();
}

std::string_view PbfBlobUnpacker::unpack(std::string_view blob) {
  std::optional<std::int32_t> size;
  std::optional<protozero::pbf_tag_type> kind;
  std::string_view data;
  pbf::pbf_reader fields(blob.data(), blob.size());
  while (fields.next()) {
    switch (fields.tag()) {
      case rawSize:
        size = pbf::int32(fields);
        break;
      case raw:
      case zlibData:
      case lzmaData:
      case bzip2Data:
      case lz4Data:
      case zstdData:
        if (kind) throw pbf::InvalidData("the blob holds its data twice");
        kind = fields.tag();
        data = pbf::bytes(fields);
        break;
      default:
        fields.skip();
    }
  }
  if (!kind) throw pbf::InvalidData("the blob holds no data");
  if (*kind == raw) return data;
  if (*kind == lzmaData) throw pbf::InvalidData("lzma compression is not supported");
  if (*kind == bzip2Data) throw pbf::InvalidData("bzip2 compression is not supported");
  if (!size) throw pbf::InvalidData("the compressed blob does not say how large its data is");
  if (*size < 0 || static_cast<std::size_t>(*size) > maxBlobSize) {
    throw pbf::InvalidData("the blob claims " + std::to_string(*size) +
                           " bytes of data; the format allows 32 MiB");
  }
  buffer_.resize(static_cast<std::size_t>(*size));
  switch (*kind) {
    case zlibData:
      unpackZlib(data);
      break;
    case lz4Data:
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
