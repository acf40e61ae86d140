// A PBF file, blob by blob (https://wiki.openstreetmap.org/wiki/PBF_Format).
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "osm/decode/ByteSource.hpp"
#include "osm/decode/ElementSink.hpp"
#include "osm/decode/PbfBlob.hpp"
#include "osm/decode/PbfBlock.hpp"

namespace OpenStreetMap {

/// Each blob goes through three steps: it is read, unpacked and decoded. Blobs are read and decoded
/// one at a time, in their order, but the steps may work on different blobs at the same time, and
/// any number of blobs may be unpacked. What goes wrong waits in its blob until that is decoded, so
/// it does not matter who is faster. An Interruption does not wait.
///
/// The first blob must be an OSMHeader whose required features are known; then come OSMData blobs,
/// and blobs of other types, which are passed over.
class PbfFile {
 public:
  struct Blob {
    std::string place;  ///< its number, counted from 1, and where it starts
    bool isHeader = false;
    bool isData = false;
    std::vector<char> header;
    std::vector<char> packed;
    PbfBlobUnpacker unpacker;
    std::string_view data;     ///< when it is unpacked
    std::exception_ptr error;  ///< DecodeError, std::bad_alloc
  };

  /// Where a blob begins, and how many there are before it.
  struct Place {
    std::uint64_t position = 0;
    std::uint64_t blobs = 0;
  };

  /// Both must outlive this. `from` is where the source begins in the file.
  PbfFile(ByteSource& source, ElementSink& sink, Place const& from);
  PbfFile(ByteSource& source, ElementSink& sink) : PbfFile(source, sink, Place()) {}

  /// Where the next blob begins.
  Place const& next() const noexcept { return place_; }

  /// Reads the next blob. Returns false at the end of the file, or after a blob with an error.
  bool read(Blob& blob) { return take(blob, &PbfFile::keepData); }
  /// The same, but passes over its data.
  bool skip(Blob& blob) { return take(blob, &PbfFile::passOverData); }
  static void unpack(Blob& blob);
  /// Throws what has gone wrong with the blob, here or in a step before.
  void decode(Blob& blob);
  /// To be called while waiting for an unpacked blob.
  void tell() { sink_.tell(); }

 private:
  using TakeData = void (PbfFile::*)(Blob& blob, std::size_t size);

  bool take(Blob& blob, TakeData takeData);
  void takeBlob(Blob& blob, std::size_t headerSize, TakeData takeData);
  void keepData(Blob& blob, std::size_t size) { readBytes(size, blob.packed); }
  void passOverData(Blob& blob, std::size_t size);
  std::optional<std::size_t> readHeaderSize();
  std::string_view readBytes(std::size_t size, std::vector<char>& buffer);

  ByteSource& source_;
  ElementSink& sink_;
  PbfBlockDecoder blocks_;
  Place place_;
  bool failed_ = false;
};

/// The PbfRunner that needs one thread and one blob.
void decodeOneByOne(PbfFile& file);

}  // namespace OpenStreetMap
