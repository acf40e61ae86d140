// The elevations along a road.
#pragma once

#include <cstdint>
#include <vector>

/// `n` samples, at evenly spaced parameters, of the quadratic Bézier curve with the control values
/// z0 (first sample), z1 (what the middle is drawn towards) and z2 (last sample). One sample alone
/// is NaN; none at all are an empty sequence.
std::vector<double> elevationProfile(std::uint64_t n, double z0, double z1, double z2);

/// Whether a profile between these values is a constant, which no curve is drawn for.
inline bool isLevel(double z0, double z1, double z2) {
  return z1 == z0 && z1 == z2;
}
