// A road's permitted direction of travel.
#pragma once

namespace velora::roadnetwork {

/// Relative to the order of the road's centre points, start node to end node.
enum class DirectionOfTravel {
  forward = 1,   ///< one-way from the start node to the end node
  backward = 2,  ///< one-way from the end node to the start node
  both = 3,
};

/// The same direction when the centre points are taken in the opposite order.
constexpr DirectionOfTravel reversed(DirectionOfTravel direction) {
  switch (direction) {
    case DirectionOfTravel::forward:
      return DirectionOfTravel::backward;
    case DirectionOfTravel::backward:
      return DirectionOfTravel::forward;
    default:
      return direction;
  }
}

}  // namespace velora::roadnetwork
