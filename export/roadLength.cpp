#include "export/roadLength.hpp"

#include <cmath>
#include <numbers>

namespace {

// WGS 84: semi-major axis in metres, flattening.
constexpr double semiMajorAxis = 6378137.0;
constexpr double flattening = 1.0 / 298.257223563;
constexpr double eccentricitySquared = flattening * (2.0 - flattening);
constexpr double radiansPerDegree = std::numbers::pi / 180.0;

double distance(double latitude1, double longitude1, double latitude2, double longitude2) {
  double const middle = (latitude1 + latitude2) / 2.0 * radiansPerDegree;
  double const sine = std::sin(middle);
  double const w = 1.0 - eccentricitySquared * sine * sine;
  double const primeVertical = semiMajorAxis / std::sqrt(w);
  double const meridian = primeVertical * (1.0 - eccentricitySquared) / w;
  // The shorter way round, also across the antimeridian.
  double const degrees = std::remainder(longitude2 - longitude1, 360.0);
  return std::hypot(meridian * (latitude2 - latitude1) * radiansPerDegree,
                    primeVertical * std::cos(middle) * degrees * radiansPerDegree);
}

}  // namespace

double roadLength(velora::roadnetwork::Road const& road) {
  auto const& latitudes = road->getCentersX();
  auto const& longitudes = road->getCentersY();
  double length = 0.0;
  for (std::size_t i = 1; i < latitudes.size(); ++i) {
    length += distance(latitudes[i - 1], longitudes[i - 1], latitudes[i], longitudes[i]);
  }
  return length;
}
