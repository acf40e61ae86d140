#include "osm/decode/ElementSink.hpp"

#include <algorithm>
#include <stdexcept>

#include "support/ustring.hpp"

namespace OpenStreetMap {

// A history file lists the versions of an element from the oldest on. Where the newer one comes
// first, it is the one that stays, as it should.
void ElementSink::checkVersions(Head const& previous, Head const& head) {
  if (previous.version == noVersion || previous.version >= head.version) return;
  std::string const name = support::ustring_to_utf8(elementNameByType.at(head.type));
  throw std::runtime_error(name + ' ' + std::to_string(head.id) + " stands here in version " +
                           std::to_string(head.version) + ", right after its version " +
                           std::to_string(previous.version) +
                           ": this is a history file, or a careless merge");
}

void ElementSink::addTag(std::u16string const* key, std::u16string const* value) {
  if (isNewKey(key)) tags_.push_back({key, value});
}

// Equal strings are interned as one, so comparing their addresses is enough. An element has a
// handful of tags; only where there are many is a set worth its while.
bool ElementSink::isNewKey(std::u16string const* key) {
  constexpr std::size_t many = 64;
  if (tags_.size() < many) {
    return std::none_of(tags_.begin(), tags_.end(), [&](Tag tag) { return tag.key == key; });
  }
  if (manyKeys_.empty()) {
    for (Tag const tag : tags_) manyKeys_.insert(tag.key);
  }
  return manyKeys_.insert(key).second;
}

void ElementSink::end() {
  if (!head_->visible) return;
  switch (head_->type) {
    case ElementType::node:
      if (position_) storeNode(head_->id, *position_);
      return;
    case ElementType::way:
      return storeWay(head_->id);
    case ElementType::relation:
      return storeRelation(head_->id);
  }
}

}  // namespace OpenStreetMap
