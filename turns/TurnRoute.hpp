// The roads of one turn.
#pragma once

#include <variant>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "turns/TurnRestriction.hpp"
#include "turns/ViaPath.hpp"
#include "turns/WayEnds.hpp"

/// More Nodes than any real restriction goes through.
constexpr std::size_t mostViaNodes = 64;
/// More nodes of ways than that.
constexpr std::size_t mostPathNodes = 10000;

struct TurnRoute {
  RoadEnd from;
  std::vector<OpenStreetMap::Id> viaNodes;
  std::vector<support::ModelId> viaRoads;
  RoadEnd to;
};

/// The turn from one way over the path to another on the roads of a network; or why there is none.
/// Where a way goes on beyond the path's end, the direction of travel tells which of its two roads
/// is meant. Where the path's first or last node is no Node, since the roads there were joined, the
/// turn begins or ends at the next one.
std::variant<TurnRoute, UnmappedReason> findTurnRoute(RoadNetworkImporter const& importer,
                                                      WayEnds const& ends,
                                                      OpenStreetMap::Id fromWay,
                                                      ViaPath const& path, OpenStreetMap::Id toWay);
