#include "report/lineLength.hpp"

#include <GeographicLib/Geodesic.hpp>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace {

// Up to here the series is as exact as coordinates in degrees are.
constexpr double nearby = 0.02;
constexpr double highLatitude = 85.0;

// Gauss's mid-latitude series to the third power: a fifteenth of the time of the general solution.
double shortDistance(double latitude1, double latitude2, double longitudes) {
  constexpr double degree = std::numbers::pi / 180.0;
  constexpr double axis = 6378137.0;
  constexpr double flattening = 1.0 / 298.257223563;
  constexpr double eccentricity = flattening * (2.0 - flattening);       // squared
  constexpr double eccentricity2 = eccentricity / (1.0 - eccentricity);  // the second, squared
  double const north = (latitude2 - latitude1) * degree;
  double const east = longitudes * degree;
  double const middle = 0.5 * (latitude1 + latitude2) * degree;
  double const sine = std::sin(middle);
  double const cosine = std::cos(middle);
  double const sine2 = sine * sine;
  double const cosine2 = cosine * cosine;
  double const eta = eccentricity2 * cosine2;
  double const v = 1.0 + eta;
  double const normal = axis / std::sqrt(1.0 - eccentricity * sine2);
  double const north2 = north * north;
  double const east2 = east * east;
  double const x = normal * cosine * east *
                   (1.0 - sine2 * east2 / 24.0 +
                    (1.0 + eta - 9.0 * eccentricity2 * sine2) * north2 / (24.0 * v * v));
  double const y = normal / v * north *
                   (1.0 - (2.0 * cosine2 + 3.0 * sine2 + 2.0 * eta * cosine2) * east2 / 24.0 +
                    eccentricity2 * (cosine2 - sine2) * north2 / (8.0 * v * v));
  return std::sqrt(x * x + y * y);
}

}  // namespace

double distance(double latitude1, double longitude1, double latitude2, double longitude2) {
  double const longitudes = longitude2 - longitude1;
  if (std::abs(latitude2 - latitude1) < nearby && std::abs(longitudes) < nearby &&
      std::abs(latitude1) < highLatitude) {
    return shortDistance(latitude1, latitude2, longitudes);
  }
  double metres = 0.0;
  GeographicLib::Geodesic::WGS84().Inverse(latitude1, longitude1, latitude2, longitude2, metres);
  return metres;
}

double lineLength(std::span<double const> latitudes, std::span<double const> longitudes) {
  double length = 0.0;
  for (std::size_t i = 1; i < latitudes.size(); ++i) {
    length += distance(latitudes[i - 1], longitudes[i - 1], latitudes[i], longitudes[i]);
  }
  return length;
}
