#include "segments/elevationProfile.hpp"

std::vector<double> elevationProfile(std::uint64_t n, double z0, double z1, double z2) {
  std::vector<double> elevations;
  if (n == 0) return elevations;
  elevations.reserve(n);
  auto const m = static_cast<double>(n - 1);
  for (std::uint64_t i = 0; i < n; ++i) {
    double const t = static_cast<double>(i) / m;
    double const u = 1.0 - t;
    double const p = z0 * u + z1 * t;
    double const q = u * z1 + z2 * t;
    elevations.push_back(q * t + p * u);
  }
  return elevations;
}
