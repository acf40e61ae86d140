#include "osm/decode/PbfBlock.hpp"

#include <cmath>
#include <optional>
#include <string>

#include "osm/decode/PbfElement.hpp"
#include "osm/decode/pbfFieldNumbers.hpp"

namespace OpenStreetMap {
namespace {

std::int64_t sum(std::int64_t a, std::int64_t b, char const* what) {
  std::int64_t result = 0;
  if (__builtin_add_overflow(a, b, &result)) {
    throw pbf::InvalidData(std::string(what) + " does not fit 64 bits");
  }
  return result;
}

std::int64_t nanodegrees(std::int64_t offset, std::int64_t granularity, std::int64_t value,
                         char const* what) {
  std::int64_t result = 0;
  if (__builtin_mul_overflow(granularity, value, &result)) {
    throw pbf::InvalidData(std::string(what) + " is out of range");
  }
  return sum(offset, result, what);
}

// The position of a node that has none: 2147483647 in units of 100 nanodegrees.
constexpr std::int64_t nowhere = 2147483647LL * 100;

}  // namespace

double degreesFromNano(std::int64_t nanodegrees, double limit, char const* what) {
  double const degrees = static_cast<double>(nanodegrees) / 1e9;
  if (!(std::abs(degrees) <= limit)) {
    throw pbf::InvalidData(std::string(what) + " of " + std::to_string(nanodegrees) +
                           " nanodegrees is out of range");
  }
  return degrees;
}

void PbfBlockDecoder::decode(std::string_view block) {
  strings_.clear();
  groups_.clear();
  granularity_ = 100;
  latitudeOffset_ = 0;
  longitudeOffset_ = 0;
  bool hasStrings = false;
  // What a group needs to be understood may stand after it.
  pbf::pbf_reader fields(block.data(), block.size());
  while (fields.next()) {
    switch (BlockField{fields.tag()}) {
      case BlockField::strings:
        readStrings(pbf::message(fields));
        hasStrings = true;
        break;
      case BlockField::group:
        groups_.push_back(pbf::message(fields));
        break;
      case BlockField::granularity:
        granularity_ = pbf::int32(fields);
        break;
      case BlockField::latitudeOffset:
        latitudeOffset_ = pbf::int64(fields);
        break;
      case BlockField::longitudeOffset:
        longitudeOffset_ = pbf::int64(fields);
        break;
      default:
        fields.skip();
    }
  }
  if (granularity_ <= 0) throw pbf::InvalidData("the granularity is not positive");
  if (!groups_.empty() && !hasStrings) throw pbf::InvalidData("the block has no string table");
  for (pbf::pbf_reader const& group : groups_) decodeGroup(group);
}

void PbfBlockDecoder::readStrings(pbf::pbf_reader table) {
  while (table.next()) {
    if (StringTableField{table.tag()} == StringTableField::string) {
      strings_.push_back({pbf::bytes(table)});
    } else {
      table.skip();
    }
  }
}

void PbfBlockDecoder::decodeGroup(pbf::pbf_reader group) {
  while (group.next()) {
    switch (GroupField{group.tag()}) {
      case GroupField::node:
        decodeNode(pbf::message(group));
        break;
      case GroupField::dense:
        decodeDense(pbf::message(group));
        break;
      case GroupField::way:
        decodeWay(pbf::message(group));
        break;
      case GroupField::relation:
        decodeRelation(pbf::message(group));
        break;
      default:
        group.skip();
    }
  }
}

void PbfBlockDecoder::decodeNode(pbf::pbf_reader node) {
  PbfElement element{ElementType::node};
  std::optional<std::int64_t> latitude;
  std::optional<std::int64_t> longitude;
  while (node.next()) {
    switch (NodeField{node.tag()}) {
      case NodeField::latitude:
        latitude = pbf::sint64(node);
        break;
      case NodeField::longitude:
        longitude = pbf::sint64(node);
        break;
      default:
        element.read(node);
    }
  }
  begin(element);
  if (element.head().visible) {
    if (!latitude || !longitude) throw pbf::InvalidData("node without lat or lon");
    setPosition(*latitude, *longitude);
  }
  sink_.end();
}

void PbfBlockDecoder::decodeDense(pbf::pbf_reader dense) {
  pbf::PackedSint64 ids;
  pbf::PackedSint64 latitudes;
  pbf::PackedSint64 longitudes;
  pbf::PackedInt32 keysAndValues;
  pbf::PackedInt32 versions;
  pbf::PackedBool visible;
  while (dense.next()) {
    switch (DenseField{dense.tag()}) {
      case DenseField::ids:
        pbf::readPacked(dense, ids);
        break;
      case DenseField::info:
        for (pbf::pbf_reader info = pbf::message(dense); info.next();) {
          switch (InfoField{info.tag()}) {
            case InfoField::version:
              pbf::readPacked(info, versions);
              break;
            case InfoField::visible:
              pbf::readPacked(info, visible);
              break;
            default:
              info.skip();
          }
        }
        break;
      case DenseField::latitudes:
        pbf::readPacked(dense, latitudes);
        break;
      case DenseField::longitudes:
        pbf::readPacked(dense, longitudes);
        break;
      case DenseField::keysAndValues:
        pbf::readPacked(dense, keysAndValues);
        break;
      default:
        dense.skip();
    }
  }
  bool const anyTags = !keysAndValues.empty();
  std::int64_t latitude = 0;
  std::int64_t longitude = 0;
  ElementSink::Head node{ElementType::node};
  while (!ids.empty()) {
    node.id = sum(node.id, pbf::next(ids, "ids"), "node id");
    latitude = sum(latitude, pbf::next(latitudes, "latitudes"), "latitude");
    longitude = sum(longitude, pbf::next(longitudes, "longitudes"), "longitude");
    // What is known about the nodes may end before they do.
    node.version = versions.empty() ? ElementSink::noVersion : pbf::next(versions, "versions");
    node.visible = visible.empty() || pbf::next(visible, "visible flags");
    sink_.begin(node);
    if (node.visible) setPosition(latitude, longitude);
    if (anyTags) addDenseTags(keysAndValues);
    sink_.end();
  }
  if (!latitudes.empty() || !longitudes.empty() || !keysAndValues.empty() || !visible.empty()) {
    throw pbf::InvalidData("dense nodes with more coordinates, tags or flags than ids");
  }
}

void PbfBlockDecoder::decodeWay(pbf::pbf_reader way) {
  PbfElement element{ElementType::way};
  pbf::PackedSint64 references;
  while (way.next()) {
    if (WayField{way.tag()} == WayField::references) {
      pbf::readPacked(way, references);
    } else {
      element.read(way);
    }
  }
  begin(element);
  std::int64_t node = 0;
  for (std::int64_t const delta : references) {
    node = sum(node, delta, "node reference");
    sink_.addReference(node);
  }
  sink_.end();
}

void PbfBlockDecoder::decodeRelation(pbf::pbf_reader relation) {
  PbfElement element{ElementType::relation};
  pbf::PackedInt32 roles;
  pbf::PackedSint64 references;
  pbf::PackedInt32 types;
  while (relation.next()) {
    switch (RelationField{relation.tag()}) {
      case RelationField::roles:
        pbf::readPacked(relation, roles);
        break;
      case RelationField::references:
        pbf::readPacked(relation, references);
        break;
      case RelationField::types:
        pbf::readPacked(relation, types);
        break;
      default:
        element.read(relation);
    }
  }
  begin(element);
  bool const isKept = sink_.keepsDetails(ElementType::relation);
  std::int64_t reference = 0;
  while (!references.empty()) {
    reference = sum(reference, pbf::next(references, "members"), "member reference");
    std::int32_t const type = pbf::next(types, "member types");
    if (type < 0 || type > 2) {
      throw pbf::InvalidData("member type " + std::to_string(type) + " is unknown");
    }
    std::int32_t const role = pbf::next(roles, "member roles");
    String& roleText = string(static_cast<std::uint32_t>(role));
    if (!isKept) continue;
    sink_.addMember({static_cast<ElementType>(type), reference, intern(roleText)});
  }
  if (!types.empty() || !roles.empty()) {
    throw pbf::InvalidData("relation with more member types or roles than members");
  }
  sink_.end();
}

void PbfBlockDecoder::begin(PbfElement element) {
  sink_.begin(element.head());
  while (!element.keys.empty()) {
    std::uint32_t const key = pbf::next(element.keys, "keys");
    addTag(element.type(), key, pbf::next(element.values, "values"));
  }
  if (!element.values.empty()) throw pbf::InvalidData("more tag values than keys");
}

// The tags of one dense node: keys and values by turns, up to a 0.
void PbfBlockDecoder::addDenseTags(pbf::PackedInt32& keysAndValues) {
  while (std::int32_t const key = pbf::next(keysAndValues, "tags")) {
    std::int32_t const value = pbf::next(keysAndValues, "tag values");
    addTag(ElementType::node, static_cast<std::uint32_t>(key), static_cast<std::uint32_t>(value));
  }
}

void PbfBlockDecoder::addTag(ElementType type, std::uint32_t key, std::uint32_t value) {
  String& keyText = string(key);
  String& valueText = string(value);
  if (!sink_.keepsDetails(type)) return;
  if (!keyText.isKeptKey) keyText.isKeptKey = sink_.keepsKey(keyText.utf8);
  if (*keyText.isKeptKey) sink_.addTag(intern(keyText), intern(valueText));
}

void PbfBlockDecoder::setPosition(std::int64_t latitude, std::int64_t longitude) {
  latitude = nanodegrees(latitudeOffset_, granularity_, latitude, "latitude");
  longitude = nanodegrees(longitudeOffset_, granularity_, longitude, "longitude");
  if (latitude == nowhere && longitude == nowhere) return;
  sink_.setPosition(degreesFromNano(latitude, maxLatitude, "latitude"),
                    degreesFromNano(longitude, maxLongitude, "longitude"));
}

PbfBlockDecoder::String& PbfBlockDecoder::string(std::uint32_t index) {
  if (index >= strings_.size()) {
    throw pbf::InvalidData("string " + std::to_string(index) + " is not in the string table");
  }
  return strings_[index];
}

std::u16string const* PbfBlockDecoder::intern(String& string) {
  if (string.interned == nullptr) string.interned = sink_.intern(string.utf8);
  return string.interned;
}

}  // namespace OpenStreetMap
