// How long a line is on the ground.
#pragma once

#include <span>

/// Metres along the geodesic between two points in degrees, on the WGS 84 ellipsoid, to some
/// nanometres.
double distance(double latitude1, double longitude1, double latitude2, double longitude2);

/// The sum of the geodesics between the points, of which there are as many of both.
double lineLength(std::span<double const> latitudes, std::span<double const> longitudes);
