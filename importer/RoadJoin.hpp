// What the chaining did at one Node.
#pragma once

#include <array>

#include "importer/RoadWayIds.hpp"
#include "osm/records.hpp"

/// Two roads that met at a Node became one, and the Node went.
struct RoadJoin {
  OpenStreetMap::Id node;
  RoadWayIds::RoadId road;                ///< what they are part of in the end
  std::array<RoadWayIds::WayId, 2> ways;  ///< that met there: of the lower road id first
  bool turned;                            ///< whether both roads began, or both ended, at the Node
};
