#include "osm/decode/PbfFile.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "osm/decode/DecodeError.hpp"
#include "osm/decode/PbfBlob.hpp"
#include "osm/decode/PbfBlock.hpp"
#include "osm/decode/pbfFieldNumbers.hpp"
#include "osm/decode/pbfFields.hpp"
#include "support/printable.hpp"

namespace OpenStreetMap {
namespace {

constexpr std::size_t maxHeaderSize = std::size_t{64} * 1024;

struct BlobHeader {
  std::string_view type;
  std::size_t dataSize;
};

BlobHeader parseBlobHeader(std::string_view data) {
  std::optional<std::string_view> type;
  std::optional<std::int32_t> size;
  pbf::pbf_reader fields(data.data(), data.size());
  while (fields.next()) {
    switch (BlobHeaderField{fields.tag()}) {
      case BlobHeaderField::type:
        type = pbf::bytes(fields);
        break;
      case BlobHeaderField::dataSize:
        size = pbf::int32(fields);
        break;
      default:
        fields.skip();
    }
  }
  if (!type || type->empty()) throw pbf::InvalidData("the blob has no type");
  if (!size) throw pbf::InvalidData("the blob does not say how large it is");
  if (*size <= 0 || static_cast<std::size_t>(*size) > maxBlobSize) {
    throw pbf::InvalidData("the blob claims " + std::to_string(*size) +
                           " bytes; the format allows 1 to 32 MiB");
  }
  return {*type, static_cast<std::size_t>(*size)};
}

void addBounds(pbf::pbf_reader box, ElementSink& sink) {
  std::optional<std::int64_t> left;
  std::optional<std::int64_t> right;
  std::optional<std::int64_t> top;
  std::optional<std::int64_t> bottom;
  while (box.next()) {
    switch (BoxField{box.tag()}) {
      case BoxField::left:
        left = pbf::sint64(box);
        break;
      case BoxField::right:
        right = pbf::sint64(box);
        break;
      case BoxField::top:
        top = pbf::sint64(box);
        break;
      case BoxField::bottom:
        bottom = pbf::sint64(box);
        break;
      default:
        box.skip();
    }
  }
  if (!left || !right || !top || !bottom) throw pbf::InvalidData("the bounding box is incomplete");
  sink.addBounds(degreesFromNano(*bottom, maxLatitude, "bounding box: latitude"),
                 degreesFromNano(*left, maxLongitude, "bounding box: longitude"),
                 degreesFromNano(*top, maxLatitude, "bounding box: latitude"),
                 degreesFromNano(*right, maxLongitude, "bounding box: longitude"));
}

void decodeHeaderBlock(std::string_view block, ElementSink& sink) {
  pbf::pbf_reader fields(block.data(), block.size());
  while (fields.next()) {
    switch (HeaderBlockField{fields.tag()}) {
      case HeaderBlockField::box:
        addBounds(pbf::message(fields), sink);
        break;
      case HeaderBlockField::requiredFeature: {
        std::string_view const feature = pbf::bytes(fields);
        if (feature == "HistoricalInformation") {
          throw pbf::InvalidData("this is a history file (HistoricalInformation), not a map");
        }
        if (feature != "OsmSchema-V0.6" && feature != "DenseNodes") {
          throw pbf::InvalidData("the file requires the unknown feature " +
                                 support::quoted(feature));
        }
        break;
      }
      default:
        fields.skip();
    }
  }
}

// Runs a step of a blob; what it throws waits in the blob.
template <class Step>
void guarded(PbfFile::Blob& blob, Step const& step) {
  try {
    step();
  } catch (Interruption const&) {
    throw;
  } catch (std::runtime_error const& error) {
    blob.error = std::make_exception_ptr(DecodeError{blob.place, error.what()});
  } catch (protozero::exception const& error) {
    std::string const reason = std::string("malformed protobuf: ") + error.what();
    blob.error = std::make_exception_ptr(DecodeError{blob.place, reason});
  } catch (...) {
    blob.error = std::current_exception();
  }
}

}  // namespace

void decodeOneByOne(PbfFile& file) {
  PbfFile::Blob blob;
  while (file.read(blob)) {
    PbfFile::unpack(blob);
    file.decode(blob);
  }
}

PbfFile::PbfFile(ByteSource& source, ElementSink& sink, Place const& from)
    : source_(source), sink_(sink), blocks_(sink), place_(from) {}

bool PbfFile::take(Blob& blob, TakeData takeData) {
  if (failed_) return false;
  blob.isHeader = blob.isData = false;
  blob.place =
      "blob " + std::to_string(place_.blobs + 1) + " at byte " + std::to_string(place_.position);
  bool isThere = true;
  guarded(blob, [&] {
    std::optional<std::size_t> const headerSize = readHeaderSize();
    isThere = headerSize.has_value();
    if (isThere) takeBlob(blob, *headerSize, takeData);
  });
  ++place_.blobs;
  failed_ = blob.error != nullptr;
  return isThere;
}

void PbfFile::unpack(Blob& blob) {
  if (blob.error) return;
  guarded(blob, [&] {
    if (blob.isHeader || blob.isData) {
      blob.data = blob.unpacker.unpack({blob.packed.data(), blob.packed.size()});
    }
  });
}

void PbfFile::decode(Blob& blob) {
  if (!blob.error) {
    guarded(blob, [&] {
      if (blob.isHeader) decodeHeaderBlock(blob.data, sink_);
      if (blob.isData) blocks_.decode(blob.data);
    });
  }
  if (blob.error) std::rethrow_exception(blob.error);
}

void PbfFile::takeBlob(Blob& blob, std::size_t headerSize, TakeData takeData) {
  BlobHeader const header = parseBlobHeader(readBytes(headerSize, blob.header));
  (this->*takeData)(blob, header.dataSize);
  blob.isHeader = place_.blobs == 0;
  if (blob.isHeader != (header.type == "OSMHeader")) {
    throw pbf::InvalidData(blob.isHeader ? "the file does not start with an OSMHeader"
                                         : "a second OSMHeader");
  }
  blob.isData = header.type == "OSMData";
}

void PbfFile::passOverData(Blob& /*blob*/, std::size_t size) {
  std::size_t const count = source_.skip(size);
  place_.position += count;
  if (count < size) throw pbf::InvalidData("the file is cut short");
}

std::optional<std::size_t> PbfFile::readHeaderSize() {
  std::array<char, 4> bytes{};
  std::size_t const count = source_.readFully(bytes.data(), bytes.size());
  place_.position += count;
  if (count == 0) return std::nullopt;
  if (count < bytes.size()) throw pbf::InvalidData("the file is cut short");
  std::size_t size = 0;
  for (char const byte : bytes) size = size << 8 | static_cast<unsigned char>(byte);
  if (size > maxHeaderSize) {
    throw pbf::InvalidData("the blob header claims " + std::to_string(size) +
                           " bytes; the format allows 64 KiB");
  }
  return size;
}

std::string_view PbfFile::readBytes(std::size_t size, std::vector<char>& buffer) {
  buffer.resize(size);
  std::size_t const count = source_.readFully(buffer.data(), size);
  place_.position += count;
  if (count < size) throw pbf::InvalidData("the file is cut short");
  return {buffer.data(), size};
}

}  // namespace OpenStreetMap
