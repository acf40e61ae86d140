#include "export/roadLength.hpp"

#include <GeographicLib/Geodesic.hpp>

double roadLength(velora::roadnetwork::Road const& road) {
  auto const& earth = GeographicLib::Geodesic::WGS84();
  auto const& latitudes = road->getCentersX().values();
  auto const& longitudes = road->getCentersY().values();
  double length = 0.0;
  for (std::size_t i = 1; i < latitudes.size(); ++i) {
    double distance = 0.0;
    earth.Inverse(latitudes[i - 1], longitudes[i - 1], latitudes[i], longitudes[i], distance);
    length += distance;
  }
  return length;
}
