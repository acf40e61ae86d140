#include "segments/assignSegmentElevations.hpp"

#include <optional>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "segments/ConstantSequences.hpp"
#include "segments/elevationProfile.hpp"
#include "support/lookup.hpp"
#include "tags/layer.hpp"

using velora::roadnetwork::RoadSegment;

namespace {

// By road id; none for a road that was absorbed by another.
class RoadElevations {
 public:
  explicit RoadElevations(RoadWayIds::RoadId maxRoadId) : elevations_(maxRoadId + 1) {}

  void set(RoadWayIds::RoadId road, double elevation) { elevations_[road] = elevation; }
  double at(RoadWayIds::RoadId road) const {
    if (road >= elevations_.size() || !elevations_[road]) support::throwMissing();
    return *elevations_[road];
  }

 private:
  std::vector<std::optional<double>> elevations_;
};

RoadElevations computeRoadElevations(RoadNetworkImporter& importer) {
  auto const& roadWayIds = importer.roadWayIds;
  RoadElevations roadElevations(roadWayIds.maxRoadId());
  // The roads of a way come one after the other.
  std::optional<RoadWayIds::WayId> lastWay;
  double lastElevation = 0.0;
  for (RoadWayIds::RoadId id = 0; id <= roadWayIds.maxRoadId(); ++id) {
    double sum = 0.0;
    std::size_t count = 0;
    roadWayIds.forEach(id, [&](RoadWayIds::WayId way) {
      importer.reader.populate(importer.reader.ways);  // a reader may fill its tables when asked
      if (way != lastWay) {
        lastElevation = wayLayerElevation(importer.reader.ways.at(way).tags);
        lastWay = way;
      }
      sum += lastElevation;
      ++count;
    });
    if (count > 0) roadElevations.set(id, sum / static_cast<double>(count));
  }
  return roadElevations;
}

void assignNodeElevations(RoadNetworkImporter& importer, RoadElevations const& roadElevations) {
  std::vector<double> position;
  for (auto const& [id, node] : importer.roadNetwork->getNodes()) {
    if (!node->hasPosition()) continue;
    double sum = 0.0;
    std::size_t count = 0;
    for (auto const& roads : {node->getIncomingRoads(), node->getOutgoingRoads()}) {
      for (auto const& road : roads) {
        sum += roadElevations.at(road->getID());
        ++count;
      }
    }
    position.assign(node->getPosition().begin(), node->getPosition().end());
    position[2] = sum / static_cast<double>(count);  // NaN for a Node without roads
    node->setPosition(position);
  }
}

void assignProfiles(RoadNetworkImporter& importer, RoadElevations const& roadElevations) {
  ConstantSequences constants;
  for (auto const& road : importer.roadNetwork->getRoads()) {
    double const onRoad = roadElevations.at(road->getID());
    double const atStart = road->getStartNode()->getElevation();
    double const atEnd = road->getEndNode()->getElevation();
    RoadSegment const segment = road->getRoadSegments()[0];
    std::size_t const n = segment->getCentersX().size();
    bool const isLevel = onRoad == atStart && onRoad == atEnd;
    segment->setGeometry(
        segment->getCentersX(), segment->getCentersY(),
        isLevel ? constants.of(n, onRoad)
                : ConstantSequences::Sequence(elevationProfile(n, atStart, onRoad, atEnd)),
        segment->getBankingAngles(), segment->getHeadings());
  }
}

}  // namespace

void assignSegmentElevations(RoadNetworkImporter& importer) {
  RoadElevations const roadElevations = computeRoadElevations(importer);
  assignNodeElevations(importer, roadElevations);
  assignProfiles(importer, roadElevations);
}
