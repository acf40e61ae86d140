#include "osm/decode/TableFiller.hpp"

#include <algorithm>
#include <span>

namespace OpenStreetMap {

void TableFiller::addTag(std::u16string const* key, std::u16string const* value) {
  // Equal strings are interned as one, so comparing their addresses is enough.
  bool const known =
      std::any_of(tags_.begin(), tags_.end(), [&](Tag tag) { return tag.key == key; });
  if (!known) tags_.push_back({key, value});
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
}

void TableFiller::addBounds(double south, double west, double north, double east) {
  bounds_.latitude.add(south, north);
  bounds_.longitude.add(west, east);
}

void TableFiller::Range::add(double lowest, double highest) noexcept {
  low = std::min(low, lowest);
  high = std::max(high, highest);
}

}  // namespace OpenStreetMap
