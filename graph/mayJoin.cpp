#include "graph/mayJoin.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "model/roadnetwork/DirectionOfTravel.hpp"
#include "support/ustring.hpp"
#include "tags/layer.hpp"

using OpenStreetMap::Tags;
using velora::roadnetwork::Node;
using velora::roadnetwork::NodeImpl;
using velora::roadnetwork::Road;

namespace {

// https://wiki.openstreetmap.org/wiki/Forward_%26_backward,_left_%26_right
bool isDirectional(std::u16string_view key) {
  auto const has = [&](std::u16string_view part) { return key.find(part) != key.npos; };
  return has(u":forward") || has(u":backward") || has(u":left") || has(u":right") ||
         key == u"incline" || key == u"direction";
}

bool haveSame(Tags const& one, Tags const& other, std::u16string_view key) {
  auto const value = one.find(key);
  auto const otherValue = other.find(key);
  if (value == one.end() || otherValue == other.end()) {
    return value == one.end() && otherValue == other.end();
  }
  return value->second == otherValue->second;
}

}  // namespace

MayJoin::MayJoin(RoadNetworkImporter const& importer) : importer_(importer) {
  keys_ = {{u"highway", false}, {u"name", false}};
  for (auto const* const tags : {&importer.options.tags, &importer.options.usedTags}) {
    for (std::string const& tag : *tags) {
      std::u16string const key = support::to_ustring(tag);
      keys_.push_back({key, isDirectional(key)});
    }
  }
}

bool MayJoin::operator()(Node const& node) const {
  switch (importer_.options.joining) {
    case Joining::all:
      return true;
    case Joining::compatible:
      return areCompatible(*node.get());
    case Joining::none:
      return false;
  }
  return false;
}

bool MayJoin::areCompatible(NodeImpl const& node) const {
  std::array<Road, 2> roads;
  auto next = roads.begin();
  for (Road const& road : node.getIncomingRoads()) *next++ = road;
  for (Road const& road : node.getOutgoingRoads()) *next++ = road;
  bool const isTurned = node.getIncomingRoads().size() != 1;
  auto const direction = roads[1]->getDirection();
  if (roads[0]->getDirection() != (isTurned ? reversed(direction) : direction)) return false;
  auto const way = importer_.roadWayIds.first(roads[0]->getID());
  auto const otherWay = importer_.roadWayIds.first(roads[1]->getID());
  if (!way || !otherWay) return false;  // of a road that was there before, no tags are known
  if (way == otherWay) return true;
  auto const& ways = importer_.reader.ways;
  return agree(ways.at(*way).tags, ways.at(*otherWay).tags, isTurned);
}

bool MayJoin::agree(Tags const& one, Tags const& other, bool isTurned) const {
  return wayLayerElevation(one) == wayLayerElevation(other) &&
         std::all_of(keys_.begin(), keys_.end(), [&](Key const& key) {
           return haveSame(one, other, key.text) &&
                  !(isTurned && key.isDirectional && one.contains(key.text));
         });
}
