// By which ends of which roads a way meets the network's Nodes.
#pragma once

#include <span>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "osm/records.hpp"
#include "support/IdMap.hpp"
#include "turns/TurnRestriction.hpp"

/// Where a road that begins or ends with a part of the way lies at a Node.
struct WayEnd {
  OpenStreetMap::Id way;
  OpenStreetMap::Id node;
  bool isAlong;  ///< whether one leaves the Node here in the direction in which the way was drawn
  RoadEnd end;
  bool mayArrive;  ///< at the Node, by the road's direction of travel
  bool mayDepart;
};

class WayEnds {
 public:
  /// Of some ways. The importer must have run. Each of its roads is a step.
  WayEnds(RoadNetworkImporter const& importer, support::IdSet const& ways, support::Steps& steps);

  std::span<WayEnd const> at(OpenStreetMap::Id way, OpenStreetMap::Id node) const;

 private:
  std::vector<WayEnd> ends_;  // by way and node
};
