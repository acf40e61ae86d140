#include "osm/decode/PbfBlock.hpp"

#include <cmath>
#include <optional>
#include <string>

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

// The `visible` field of an Info message; history files use it, and some others.
bool isVisible(pbf::pbf_reader info) {
  bool visible = true;
  while (info.next()) {
    if (info.tag() == 6) {
      visible = pbf::boolean(info);
    } else {
      info.skip();
    }
  }
  return visible;
}

pbf::PackedBool visibleFlags(pbf::pbf_reader denseInfo) {
  pbf::PackedBool flags;
  while (denseInfo.next()) {
    if (denseInfo.tag() == 6) {
      pbf::readPacked(denseInfo, flags);
    } else {
      denseInfo.skip();
    }
  }
  return flags;
}

std::int64_t requiredId(std::optional<std::int64_t> id, char const* element) {
  if (!id) throw pbf::InvalidData(std::string(element) + " without id");
  return *id;
}

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
    switch (fields.tag()) {
      case 1:
        readStrings(pbf::message(fields));
        hasStrings = true;
        break;
      case 2:
        groups_.push_back(pbf::message(fields));
        break;
      case 17:
        granularity_ = pbf::int32(fields);
        break;
      case 19:
        latitudeOffset_ = pbf::int64(fields);
        break;
      case 20:
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
    if (table.tag() == 1) {
      strings_.push_back({pbf::bytes(table), nullptr});
    } else {
      table.skip();
    }
  }
}

void PbfBlockDecoder::decodeGroup(pbf::pbf_reader group) {
  while (group.next()) {
    switch (group.tag()) {
      case 1:
        decodeNode(pbf::message(group));
        break;
      case 2:
        decodeDense(pbf::message(group));
        break;
      case 3:
        decodeWay(pbf::message(group));
        break;
      case 4:
        decodeRelation(pbf::message(group));
        break;
      default:
        group.skip();
    }
  }
}

void PbfBlockDecoder::decodeNode(pbf::pbf_reader node) {
  std::optional<std::int64_t> id;
  std::optional<std::int64_t> latitude;
  std::optional<std::int64_t> longitude;
  pbf::PackedUint32 keys;
  pbf::PackedUint32 values;
  bool visible = true;
  while (node.next()) {
    switch (node.tag()) {
      case 1:
        id = pbf::sint64(node);
        break;
      case 2:
        pbf::readPacked(node, keys);
        break;
      case 3:
        pbf::readPacked(node, values);
        break;
      case 4:
        visible = isVisible(pbf::message(node));
        break;
      case 8:
        latitude = pbf::sint64(node);
        break;
      case 9:
        longitude = pbf::sint64(node);
        break;
      default:
        node.skip();
    }
  }
  requiredId(id, "node");
  if (!latitude || !longitude) throw pbf::InvalidData("node without lat or lon");
  addTags(keys, values);
  if (visible) {
    storeNode(*id, *latitude, *longitude);
  } else {
    filler_.drop();
  }
}

void PbfBlockDecoder::decodeDense(pbf::pbf_reader dense) {
  pbf::PackedSint64 ids;
  pbf::PackedSint64 latitudes;
  pbf::PackedSint64 longitudes;
  pbf::PackedInt32 keysAndValues;
  pbf::PackedBool visible;
  while (dense.next()) {
    switch (dense.tag()) {
      case 1:
        pbf::readPacked(dense, ids);
        break;
      case 5:
        visible = visibleFlags(pbf::message(dense));
        break;
      case 8:
        pbf::readPacked(dense, latitudes);
        break;
      case 9:
        pbf::readPacked(dense, longitudes);
        break;
      case 10:
        pbf::readPacked(dense, keysAndValues);
        break;
      default:
        dense.skip();
    }
  }
  bool const anyTags = !keysAndValues.empty();
  std::int64_t id = 0;
  std::int64_t latitude = 0;
  std::int64_t longitude = 0;
  while (!ids.empty()) {
    id = sum(id, pbf::next(ids, "ids"), "node id");
    latitude = sum(latitude, pbf::next(latitudes, "latitudes"), "latitude");
    longitude = sum(longitude, pbf::next(longitudes, "longitudes"), "longitude");
    if (anyTags) addDenseTags(keysAndValues);
    if (visible.empty() || pbf::next(visible, "visible flags")) {
      storeNode(id, latitude, longitude);
    } else {
      filler_.drop();
    }
  }
  if (!latitudes.empty() || !longitudes.empty() || !keysAndValues.empty() || !visible.empty()) {
    throw pbf::InvalidData("dense nodes with more coordinates, tags or flags than ids");
  }
}

void PbfBlockDecoder::decodeWay(pbf::pbf_reader way) {
  std::optional<std::int64_t> id;
  pbf::PackedUint32 keys;
  pbf::PackedUint32 values;
  pbf::PackedSint64 references;
  bool visible = true;
  while (way.next()) {
    switch (way.tag()) {
      case 1:
        id = pbf::int64(way);
        break;
      case 2:
        pbf::readPacked(way, keys);
        break;
      case 3:
        pbf::readPacked(way, values);
        break;
      case 4:
        visible = isVisible(pbf::message(way));
        break;
      case 8:
        pbf::readPacked(way, references);
        break;
      default:
        way.skip();
    }
  }
  requiredId(id, "way");
  addTags(keys, values);
  std::int64_t node = 0;
  for (std::int64_t const delta : references) {
    node = sum(node, delta, "node reference");
    filler_.addReference(node);
  }
  if (visible) {
    filler_.storeWay(*id);
  } else {
    filler_.drop();
  }
}

void PbfBlockDecoder::decodeRelation(pbf::pbf_reader relation) {
  std::optional<std::int64_t> id;
  pbf::PackedUint32 keys;
  pbf::PackedUint32 values;
  pbf::PackedInt32 roles;
  pbf::PackedSint64 references;
  pbf::PackedInt32 types;
  bool visible = true;
  while (relation.next()) {
    switch (relation.tag()) {
      case 1:
        id = pbf::int64(relation);
        break;
      case 2:
        pbf::readPacked(relation, keys);
        break;
      case 3:
        pbf::readPacked(relation, values);
        break;
      case 4:
        visible = isVisible(pbf::message(relation));
        break;
      case 8:
        pbf::readPacked(relation, roles);
        break;
      case 9:
        pbf::readPacked(relation, references);
        break;
      case 10:
        pbf::readPacked(relation, types);
        break;
      default:
        relation.skip();
    }
  }
  requiredId(id, "relation");
  addTags(keys, values);
  std::int64_t reference = 0;
  while (!references.empty()) {
    reference = sum(reference, pbf::next(references, "members"), "member reference");
    std::int32_t const type = pbf::next(types, "member types");
    if (type < 0 || type > 2) {
      throw pbf::InvalidData("member type " + std::to_string(type) + " is unknown");
    }
    std::int32_t const role = pbf::next(roles, "member roles");
    filler_.addMember(
        {static_cast<ElementType>(type), reference, string(static_cast<std::uint32_t>(role))});
  }
  if (!types.empty() || !roles.empty()) {
    throw pbf::InvalidData("relation with more member types or roles than members");
  }
  if (visible) {
    filler_.storeRelation(*id);
  } else {
    filler_.drop();
  }
}

void PbfBlockDecoder::addTags(pbf::PackedUint32 keys, pbf::PackedUint32 values) {
  while (!keys.empty()) {
    std::u16string const* const key = string(pbf::next(keys, "keys"));
    filler_.addTag(key, string(pbf::next(values, "values")));
  }
  if (!values.empty()) throw pbf::InvalidData("more tag values than keys");
}

// The tags of one dense node: keys and values by turns, up to a 0.
void PbfBlockDecoder::addDenseTags(pbf::PackedInt32& keysAndValues) {
  while (std::int32_t const key = pbf::next(keysAndValues, "tags")) {
    std::int32_t const value = pbf::next(keysAndValues, "tag values");
    std::u16string const* const interned = string(static_cast<std::uint32_t>(key));
    filler_.addTag(interned, string(static_cast<std::uint32_t>(value)));
  }
}

void PbfBlockDecoder::storeNode(std::int64_t id, std::int64_t latitude, std::int64_t longitude) {
  filler_.storeNode(
      id,
      degreesFromNano(nanodegrees(latitudeOffset_, granularity_, latitude, "latitude"), 90.0,
                      "latitude"),
      degreesFromNano(nanodegrees(longitudeOffset_, granularity_, longitude, "longitude"), 180.0,
                      "longitude"));
}

std::u16string const* PbfBlockDecoder::string(std::uint64_t index) {
  if (index >= strings_.size()) {
    throw pbf::InvalidData("string " + std::to_string(index) + " is not in the string table");
  }
  String& entry = strings_[index];
  if (entry.interned == nullptr) entry.interned = filler_.intern(entry.utf8);
  return entry.interned;
}

}  // namespace OpenStreetMap
