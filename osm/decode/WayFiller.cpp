#include "osm/decode/WayFiller.hpp"

#include <algorithm>
#include <utility>
#include <vector>

#include "support/ustring.hpp"

namespace OpenStreetMap {

WayFiller::WayFiller(RecordStorage& storage, WayTable& ways, RelationTable& relations,
                     Selection const& selection)
    : ElementSink(storage),
      ways_(ways),
      relations_(relations),
      selection_(selection),
      wayKey_(storage.intern(selection.wayKey)),
      relationType_(support::to_ustring(selection.relationType)) {}

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
  if (!relationIds_.insert(id) || !isOfType(TagMap(tags()), relationType_)) return;
  relations_.insert({id, Tags(storage().keep(tags())), storage().keep(members())});
}

bool isOfType(TagMap const& relation, std::u16string_view wanted) {
  auto const found = relation.find(u"type");
  if (wanted.empty() || found == relation.end()) return false;
  std::u16string_view const type = found->second;
  return type.substr(0, type.find(u':')) == wanted;
}

WayNodes WayFiller::takeNodes(support::Progress const& progress) {
  support::Steps steps(progress, support::Stage::placingNodes, references_.size() + nodes_.size());
  ids_.assignNumbers(steps);
  auto reference = references_.begin();
  for (Way const& way : ways_) {
    for (Id const id : way.nodeReferences) {
      *reference = ids_.numberAt(*reference, id);
      ++reference;
      steps.step();
    }
  }
  WayNodes result(std::move(ids_), std::move(references_));
  auto find = result.finder();
  forEachFirstNode(steps, [&](Id id, double latitude, double longitude) {
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
void WayFiller::forEachFirstNode(support::Steps& steps, Action const& action) const {
  IdNumbering seen;
  nodes_.forEach([&](Id id, double latitude, double longitude) {
    if (nodes_.isAscending() || seen.insert(id)) action(id, latitude, longitude);
    steps.step();
  });
}

}  // namespace OpenStreetMap
