#include "segments/assignSegmentElevations.hpp"

#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "segments/elevationProfile.hpp"
#include "support/lookup.hpp"
#include "support/ustring.hpp"

using support::lookup;
using velora::roadnetwork::RoadSegment;

namespace {

constexpr double layerHeight = 4.9;

using RoadElevations = support::ModelIdMap<double>;

RoadElevations computeRoadElevations(RoadNetworkImporter& importer) {
  auto const& roadWayIds = importer.roadWayIds;
  RoadElevations roadElevations(roadWayIds.size());
  for (RoadWayIds::RoadId id = 1; id <= roadWayIds.maxRoadId(); ++id) {
    double sum = 0.0;
    std::size_t count = 0;
    roadWayIds.forEach(id, [&](RoadWayIds::WayId way) {
      importer.reader.populate(importer.reader.ways);
      sum += wayLayerElevation(importer.reader.ways.at(way).tags);
      ++count;
    });
    if (count > 0) roadElevations.emplace(id, sum / static_cast<double>(count));
  }
  return roadElevations;
}

void assignNodeElevations(RoadNetworkImporter& importer, RoadElevations const& roadElevations) {
  std::vector<double> elevations;
  std::vector<double> position;
  for (auto const& [id, node] : importer.roadNetwork->getNodes()) {
    if (!node->hasPosition()) continue;
    elevations.clear();
    for (auto const& road : node->getIncomingRoads()) {
      elevations.push_back(lookup(roadElevations, road->getID()));
    }
    for (auto const& road : node->getOutgoingRoads()) {
      elevations.push_back(lookup(roadElevations, road->getID()));
    }
    double sum = 0.0;
    for (double const elevation : elevations) sum += elevation;
    position.assign(node->getPosition().begin(), node->getPosition().end());
    position[2] = sum / static_cast<double>(elevations.size());  // NaN for a Node without roads
    node->setPosition(position);
  }
}

void assignProfiles(RoadNetworkImporter& importer, RoadElevations const& roadElevations) {
  std::vector<double> centersX;
  std::vector<double> elevations;
  for (auto const& road : importer.roadNetwork->getRoads()) {
    double const onRoad = lookup(roadElevations, road->getID());
    double const atStart = road->getStartNode()->getElevation();
    double const atEnd = road->getEndNode()->getElevation();
    RoadSegment const segment = road->getRoadSegments()[0];
    auto const& x = segment->getCentersX();
    centersX.assign(x.begin(), x.end());
    if (onRoad == atStart && onRoad == atEnd) {
      elevations.assign(x.size(), onRoad);
    } else {
      elevations = elevationProfile(x.size(), atStart, onRoad, atEnd);
    }
    segment->setGeometry(centersX, segment->getCentersY().values(), elevations,
                         segment->getBankingAngles().values(), segment->getHeadings().values());
  }
}

}  // namespace

double wayLayerElevation(OpenStreetMap::Tags const& tags) {
  static std::u16string const key = u"layer";
  auto const layer = tags.find(key);
  if (layer == tags.end()) return 0.0;
  std::istringstream text(support::ustring_to_utf8(layer->second));
  text.imbue(std::locale::classic());  // a decimal point, whatever the host's locale
  text.exceptions(std::ios::badbit);   // or it would take a failed allocation for a bad number
  double number = 0.0;
  if (!(text >> number)) return 0.0;
  return layerHeight * number;
}

void assignSegmentElevations(RoadNetworkImporter& importer) {
  RoadElevations const roadElevations = computeRoadElevations(importer);
  assignNodeElevations(importer, roadElevations);
  assignProfiles(importer, roadElevations);
}
