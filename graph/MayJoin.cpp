#include "graph/MayJoin.hpp"

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

// Whether what a tag says depends on the direction in which its way was drawn
// (https://wiki.openstreetmap.org/wiki/Forward_%26_backward,_left_%26_right).
bool isDirectional(std::u16string_view key, std::u16string_view value) {
  for (std::u16string_view const word :
       {u"forward", u"backward", u"left", u"right", u"up", u"down", u"opposite"}) {
    if (key.find(word) != key.npos || value.find(word) != value.npos) return true;
  }
  return key.starts_with(u"oneway:") || key.starts_with(u"turn:lanes") || key == u"incline" ||
         key == u"direction";
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
  if (importer.options.joining != Joining::compatible) return;
  keepRestrictedNodes();
  keys_ = {u"highway", u"name"};
  for (auto const* const tags : {&importer.options.tags, &importer.options.usedTags}) {
    for (std::string const& tag : *tags) {
      keys_.push_back(support::to_ustring(tag));
    }
  }
}

// On one road there would be no turn left to restrict.
void MayJoin::keepRestrictedNodes() {
  for (auto const& relation : importer_.reader.relations) {
    for (OpenStreetMap::Member const& member : relation.members) {
      if (*member.role != u"via") continue;
      if (member.type == OpenStreetMap::ElementType::node) {
        restrictedNodes_.insert(member.reference);
      } else if (auto const* const way = importer_.reader.ways.find(member.reference);
                 member.type == OpenStreetMap::ElementType::way && way != nullptr &&
                 !way->nodeReferences.empty()) {
        restrictedNodes_.insert(way->nodeReferences.front());
        restrictedNodes_.insert(way->nodeReferences.back());
      }
    }
  }
}

bool MayJoin::operator()(Node const& node) const {
  auto const& joinable = importer_.joinableNodes;
  if (joinable && !joinable->contains(OpenStreetMap::osmId(node->getID()))) return false;
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
  if (restrictedNodes_.contains(OpenStreetMap::osmId(node.getID()))) return false;
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
         std::all_of(keys_.begin(), keys_.end(), [&](std::u16string const& key) {
           if (!haveSame(one, other, key)) return false;
           auto const tag = one.find(key);
           bool const isName = key == u"name";
           return !isTurned || isName || tag == one.end() || !isDirectional(key, tag->second);
         });
}
