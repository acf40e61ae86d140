// Decodes one PrimitiveBlock of a PBF file.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "osm/decode/ElementSink.hpp"
#include "osm/decode/pbfFields.hpp"

namespace OpenStreetMap {

class PbfElement;

/// Nanodegrees to degrees, rounded as the same decimal number in a text file would be. Throws
/// pbf::InvalidData when it is outside -limit to limit.
double degreesFromNano(std::int64_t nanodegrees, double limit, char const* what);

/// Keeps its scratch memory from block to block.
class PbfBlockDecoder {
 public:
  explicit PbfBlockDecoder(ElementSink& sink) : sink_(sink) {}

  /// Throws pbf::InvalidData and protozero::exception.
  void decode(std::string_view block);

 private:
  // Nothing is found out about a string before it is asked for: many are only user names.
  struct String {
    std::string_view utf8;
    std::u16string const* interned = nullptr;
    std::optional<bool> isKeptKey{};
  };

  void readStrings(pbf::pbf_reader table);
  void decodeGroup(pbf::pbf_reader group);
  void decodeNode(pbf::pbf_reader node);
  void decodeDense(pbf::pbf_reader dense);
  void decodeWay(pbf::pbf_reader way);
  void decodeRelation(pbf::pbf_reader relation);

  void begin(PbfElement element);
  void addTag(ElementType type, std::uint32_t key, std::uint32_t value);
  void addDenseTags(pbf::PackedInt32& keysAndValues);
  void setPosition(std::int64_t latitude, std::int64_t longitude);
  String& string(std::uint32_t index);
  std::u16string const* intern(String& string);

  ElementSink& sink_;
  std::vector<String> strings_;
  std::vector<pbf::pbf_reader> groups_;
  std::int64_t granularity_ = 100;
  std::int64_t latitudeOffset_ = 0;
  std::int64_t longitudeOffset_ = 0;
};

}  // namespace OpenStreetMap
