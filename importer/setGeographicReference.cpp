#include "importer/setGeographicReference.hpp"

#include <boost/uuid/uuid.hpp>
#include <span>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "importer/geographicLimits.hpp"

using velora::roadnetwork::GeoReference;

namespace {

// Of no values: 0.0 / 0.0, which is NaN.
double mean(std::vector<double> const& values) {
  double sum = 0.0;
  for (double const value : values) sum += value;
  return sum / static_cast<double>(values.size());
}

}  // namespace

void setGeographicReference(RoadNetworkImporter& importer) {
  std::vector<double> const limits = geographicLimits(importer);
  double latitude = 0.0;
  double longitude = 0.0;
  if (!limits.empty()) {
    latitude = (limits[0] + limits[1]) * 0.5;
    longitude = (limits[2] + limits[3]) * 0.5;
  } else {
    auto const& nodes = importer.roadNetwork->getNodes();
    std::vector<double> latitudes;
    std::vector<double> longitudes;
    latitudes.reserve(nodes.size());
    longitudes.reserve(nodes.size());
    for (auto const& [id, node] : nodes) {
      std::span<double const> const position = node->getPosition();
      if (position.size() < 2) continue;  // a host may have replaced it
      latitudes.push_back(position[0]);
      longitudes.push_back(position[1]);
    }
    latitude = mean(latitudes);
    longitude = mean(longitudes);
  }
  GeoReference const reference = GeoReference::create(importer.model, boost::uuids::uuid{});
  reference->setOrigin(latitude, longitude, 0.0);
  importer.roadNetwork->setGeoReference(reference);
}
