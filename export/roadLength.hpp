// How long a road is on the ground.
#pragma once

#include "model/roadnetwork/Road.hpp"

/// The length of the centre line in metres on the WGS 84 ellipsoid, elevations left aside. Each
/// piece is measured with the ellipsoid's radii of curvature at its middle latitude, which for the
/// short pieces of a road is as good as the geodesic (a few parts in a million at 10 km).
double roadLength(velora::roadnetwork::Road const& road);
