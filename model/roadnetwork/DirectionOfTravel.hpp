// A road's permitted direction of travel.
#pragma once

namespace velora::roadnetwork {

/// Relative to the order of the road's centre points, start node to end node.
enum class DirectionOfTravel {
  forward = 1,   ///< one-way from the start node to the end node
  backward = 2,  ///< one-way from the end node to the start node
  both = 3,
};

}  // namespace velora::roadnetwork
