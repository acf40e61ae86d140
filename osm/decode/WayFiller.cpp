#include "osm/decode/WayFiller.hpp"

#include <algorithm>
#include <utility>
#include <vector>

namespace OpenStreetMap {

void WayFiller::storeNode(Id id, Position const& position) {
  nodes_.add(id, position.latitude, position.longitude);
}

void WayFiller::storeWay(Id id) {
  if (!wayIds_.insert(id)) return;
  bool const isKept =
      std::any_of(tags().begin(), tags().end(), [&](Tag const& tag) { return tag.key == wayKey_; });
  if (!isKept) return;
  ways_.insert(
      {id, Tags(storage().keep(tags())), storage().keep(references()), references_.size()});
  for (Id const reference : references()) references_.push_back(ids_.add(reference));
}

void WayFiller::storeRelation(Id id) {
  relationIds_.insert(id);
}

WayNodes WayFiller::takeNodes() {
  ids_.assignNumbers();
  auto reference = references_.begin();
  for (Way const& way : ways_) {
    for (Id const id : way.nodeReferences) {
      *reference = ids_.numberAt(*reference, id);
      ++reference;
    }
  }
  WayNodes result(std::move(ids_), std::move(references_));
  auto find = result.finder();
  forEachFirstNode([&](Id id, double latitude, double longitude) {
    ++counts_.nodes;
    extend({latitude, longitude});
    auto const number = find(id);
    if (number != WayNodes::none) result.setPosition(number, {latitude, longitude});
  });
  counts_.ways = wayIds_.size();
  counts_.relations = relationIds_.size();
  return result;
}

// Of two nodes with one id the first counts.
template <class Action>
void WayFiller::forEachFirstNode(Action const& action) const {
  if (nodes_.isAscending()) return nodes_.forEach(action);
  IdNumbering seen;
  nodes_.forEach([&](Id id, double latitude, double longitude) {
    if (seen.insert(id)) action(id, latitude, longitude);
  });
}

}  // namespace OpenStreetMap
