#include "importer/geographicLimits.hpp"

#include <cmath>

#include "importer/RoadNetworkImporter.hpp"

std::vector<double> geographicLimits(RoadNetworkImporter const& importer) {
  OpenStreetMap::Limits const latitude = importer.reader.getLatitudeLimits();
  OpenStreetMap::Limits const longitude = importer.reader.getLongitudeLimits();
  if (std::isnan(latitude.first) || std::isnan(latitude.second) || std::isnan(longitude.first) ||
      std::isnan(longitude.second)) {
    return {};
  }
  return {latitude.first, latitude.second, longitude.first, longitude.second};
}
