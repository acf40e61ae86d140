#include "osm/decode/decodePbf.hpp"

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

class PbfDecoder {
 public:
  PbfDecoder(ByteSource& source, ElementSink& sink) : source_(source), sink_(sink), blocks_(sink) {}

  void decode() {
    try {
      while (decodeBlob()) {
      }
    } catch (std::runtime_error const& error) {
      throw DecodeError{place(), error.what()};
    } catch (protozero::exception const& error) {
      throw DecodeError{place(), std::string("malformed protobuf: ") + error.what()};
    }
  }

 private:
  std::string place() const {
    return "blob " + std::to_string(number_) + " at byte " + std::to_string(start_);
  }

  // Returns false at the end of the file.
  bool decodeBlob() {
    start_ = position_;
    ++number_;
    std::optional<std::size_t> const headerSize = readHeaderSize();
    if (!headerSize) return false;
    BlobHeader const header = parseBlobHeader(readBytes(*headerSize, header_));
    std::string_view const blob = readBytes(header.dataSize, blob_);
    if ((number_ == 1) != (header.type == "OSMHeader")) {
      throw pbf::InvalidData(number_ == 1 ? "the file does not start with an OSMHeader"
                                          : "a second OSMHeader");
    }
    if (number_ == 1) {
      decodeHeaderBlock(unpacker_.unpack(blob), sink_);
    } else if (header.type == "OSMData") {
      blocks_.decode(unpacker_.unpack(blob));
    }
    return true;
  }

  std::optional<std::size_t> readHeaderSize() {
    std::array<char, 4> bytes{};
    std::size_t const count = source_.readFully(bytes.data(), bytes.size());
    position_ += count;
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

  std::string_view readBytes(std::size_t size, std::vector<char>& buffer) {
    buffer.resize(size);
    std::size_t const count = source_.readFully(buffer.data(), size);
    position_ += count;
    if (count < size) throw pbf::InvalidData("the file is cut short");
    return {buffer.data(), size};
  }

  ByteSource& source_;
  ElementSink& sink_;
  PbfBlobUnpacker unpacker_;
  PbfBlockDecoder blocks_;
  std::vector<char> header_;
  std::vector<char> blob_;
  std::uint64_t position_ = 0;
  std::uint64_t start_ = 0;
  std::uint64_t number_ = 0;
};

}  // namespace

void decodePbf(ByteSource& source, ElementSink& sink) {
  PbfDecoder(source, sink).decode();
}

}  // namespace OpenStreetMap
