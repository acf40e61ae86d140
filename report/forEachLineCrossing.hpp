// Where the centre lines of roads cross without a common Node.
#pragma once

#include <cstddef>
#include <functional>

#include "importer/RoadNetworkImporter.hpp"
#include "report/Finding.hpp"
#include "report/RoadGraph.hpp"

struct LineCrossing {
  /// Where on a road.
  struct Place {
    std::uint32_t road;  ///< its place in the network's list
    std::uint32_t segment;
    double share;  ///< of the segment's length, from its start
  };
  Place one;
  Place other;
  Finding::Position position;  ///< that of the point of a line if one touches the other there
};

/// Lines are straight between their points, in degrees. Two segments that begin or end at one Node
/// do not cross, whatever they do beyond it, and a road does not cross itself. Calls `action` with
/// each crossing, with some more than once. False when it ended early: in a map where so much
/// overlaps that the search would not be linear any more.
bool forEachLineCrossing(RoadNetworkImporter const& importer, RoadGraph const& graph,
                         std::function<void(LineCrossing const&)> const& action);
