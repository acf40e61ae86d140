// How long a road is on the ground.
#pragma once

#include "model/roadnetwork/Road.hpp"

/// The length of the centre line in metres: the sum of the geodesics between its points on the
/// WGS 84 ellipsoid, elevations left aside.
double roadLength(velora::roadnetwork::Road const& road);
