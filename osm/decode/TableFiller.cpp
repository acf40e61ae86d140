#include "osm/decode/TableFiller.hpp"

#include <algorithm>
#include <span>
#include <stdexcept>

#include "support/ustring.hpp"

namespace OpenStreetMap {

// A history file lists the versions of an element from the oldest on. Where the newer one comes
// first, it is the one that stays, as it should.
void TableFiller::checkVersions(Head const& previous, Head const& head) {
  if (previous.version == noVersion || previous.version >= head.version) return;
  std::string const name = support::ustring_to_utf8(elementNameByType.at(head.type));
  throw std::runtime_error(name + ' ' + std::to_string(head.id) + " stands here in version " +
                           std::to_string(head.version) + ", right after its version " +
                           std::to_string(previous.version) +
                           ": this is a history file, or a careless merge");
}

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

void TableFiller::end() {
  if (!head_->visible) return;
  switch (head_->type) {
    case ElementType::node:
      return storeNode();
    case ElementType::way:
      return storeWay();
    case ElementType::relation:
      return storeRelation();
  }
}

void TableFiller::storeNode() {
  if (!position_) return;
  auto const [latitude, longitude] = *position_;
  if (Node* const node = nodes_.insert({head_->id, Tags(), latitude, longitude})) {
    if (!tags_.empty()) node->tags = Tags(storage_.keep(std::span<Tag const>(tags_)));
    latitudes_.add(latitude, latitude);
    longitudes_.add(longitude, longitude);
  }
}

void TableFiller::storeWay() {
  if (Way* const way = ways_.insert({head_->id, Tags(), {}})) {
    way->tags = Tags(storage_.keep(std::span<Tag const>(tags_)));
    way->nodeReferences = storage_.keep(std::span<Id const>(references_));
  }
}

void TableFiller::storeRelation() {
  if (Relation* const relation = relations_.insert({head_->id, Tags(), {}})) {
    relation->tags = Tags(storage_.keep(std::span<Tag const>(tags_)));
    relation->members = storage_.keep(std::span<Member const>(members_));
  }
}

}  // namespace OpenStreetMap
