#include "osm/decode/TableFiller.hpp"

#include <algorithm>
#include <span>
#include <stdexcept>

namespace OpenStreetMap {

void TableFiller::addTag(std::u16string const* key, std::u16string const* value) {
  if (isNewKey(key)) tags_.push_back({key, value});
}

// Equal strings are interned as one, so comparing their addresses is enough. An element has a
// handful of tags; only where there are many is a set worth its while.
bool TableFiller::isNewKey(std::u16string const* key) {
  constexpr std::size_t many = 64;
  if (tags_.size() < many) {
    return std::none_of(tags_.begin(), tags_.end(), [&](Tag tag) { return tag.key == key; });
  }
  if (manyKeys_.empty()) {
    for (Tag const tag : tags_) manyKeys_.insert(tag.key);
  }
  return manyKeys_.insert(key).second;
}

void TableFiller::storeNode(Id id, double latitude, double longitude) {
  if (Node* const node = nodes_.insert({id, Tags(), latitude, longitude})) {
    if (!tags_.empty()) node->tags = Tags(storage_.keep(std::span<Tag const>(tags_)));
    extent_.latitude.add(latitude, latitude);
    extent_.longitude.add(longitude, longitude);
  }
  drop();
}

void TableFiller::storeWay(Id id) {
  if (Way* const way = ways_.insert({id, Tags(), {}})) {
    way->tags = Tags(storage_.keep(std::span<Tag const>(tags_)));
    way->nodeReferences = storage_.keep(std::span<Id const>(references_));
  }
  drop();
}

void TableFiller::storeRelation(Id id) {
  if (Relation* const relation = relations_.insert({id, Tags(), {}})) {
    relation->tags = Tags(storage_.keep(std::span<Tag const>(tags_)));
    relation->members = storage_.keep(std::span<Member const>(members_));
  }
  drop();
}

void TableFiller::drop() noexcept {
  tags_.clear();
  references_.clear();
  members_.clear();
  if (!manyKeys_.empty()) manyKeys_.clear();
}

void TableFiller::addBounds(double south, double west, double north, double east) {
  if (south > north) throw std::runtime_error("bounds whose minimum latitude is above the maximum");
  bounds_.latitude.add(south, north);
  bounds_.longitude.add(west, east);
}

void TableFiller::Range::add(double lowest, double highest) noexcept {
  low = std::min(low, lowest);
  high = std::max(high, highest);
}

}  // namespace OpenStreetMap
