#include "turns/WayEnds.hpp"

#include <algorithm>
#include <optional>
#include <tuple>
#include <utility>

using OpenStreetMap::Id;
using OpenStreetMap::osmId;
using velora::roadnetwork::DirectionOfTravel;
using velora::roadnetwork::Road;

WayEnds::WayEnds(RoadNetworkImporter const& importer, support::IdSet const& ways,
                 support::Steps& steps) {
  for (Road const& road : importer.roadNetwork->getRoads()) {
    steps.step();
    std::optional<RoadPiece> first;
    std::optional<RoadPiece> last;
    forEachPiece(*road.get(), importer, [&](RoadPiece const& piece) {
      if (!first) first = piece;
      last = piece;
    });
    if (!first) continue;
    Id const start = osmId(road->getStartNode()->getID());
    Id const end = osmId(road->getEndNode()->getID());
    bool const forward = road->getDirection() != DirectionOfTravel::backward;
    bool const backward = road->getDirection() != DirectionOfTravel::forward;
    if (ways.contains(first->way->id)) {
      ends_.push_back(
          {first->way->id, start, !first->isReversed, {road.get(), false}, backward, forward});
    }
    if (ways.contains(last->way->id)) {
      ends_.push_back(
          {last->way->id, end, last->isReversed, {road.get(), true}, forward, backward});
    }
  }
  std::sort(ends_.begin(), ends_.end(), [](WayEnd const& a, WayEnd const& b) {
    auto const key = [](WayEnd const& way) {
      return std::tuple(way.way, way.node, way.end.road->getID(), way.end.isEnd);
    };
    return key(a) < key(b);
  });
}

std::span<WayEnd const> WayEnds::at(Id way, Id node) const {
  struct Less {
    bool operator()(WayEnd const& end, std::pair<Id, Id> key) const {
      return std::pair(end.way, end.node) < key;
    }
    bool operator()(std::pair<Id, Id> key, WayEnd const& end) const {
      return key < std::pair(end.way, end.node);
    }
  };
  auto const [first, last] =
      std::equal_range(ends_.begin(), ends_.end(), std::pair(way, node), Less());
  return {first, last};
}
