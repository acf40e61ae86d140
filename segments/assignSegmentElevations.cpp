#include "segments/assignSegmentElevations.hpp"

#include <bit>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "importer/walk.hpp"
#include "segments/ConstantSequences.hpp"
#include "segments/elevationProfile.hpp"
#include "support/lookup.hpp"
#include "tags/layer.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadSegment;

namespace {

// By road id; none for a road that was absorbed by another.
class RoadElevations {
 public:
  explicit RoadElevations(RoadWayIds::RoadId maxRoadId)
      : isKnown_(maxRoadId + 1), elevations_(maxRoadId + 1) {}

  void set(RoadWayIds::RoadId road, double elevation) {
    isKnown_[road] = true;
    elevations_[road] = elevation;
  }
  double at(RoadWayIds::RoadId road) const {
    if (road >= isKnown_.size() || !isKnown_[road]) support::throwMissing();
    return elevations_[road];
  }

 private:
  std::vector<bool> isKnown_;
  std::vector<double> elevations_;
};

RoadElevations computeRoadElevations(RoadNetworkImporter& importer, support::Steps& steps) {
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
    steps.step();
    if (count > 0) roadElevations.set(id, sum / static_cast<double>(count));
  }
  return roadElevations;
}

void assignNodeElevations(RoadNetworkImporter& importer, RoadElevations const& roadElevations,
                          support::Steps& steps) {
  std::vector<double> position;
  forEachNode(*importer.roadNetwork.get(), steps, [&](Node const& node) {
    if (!node->hasPosition()) return;
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
  });
}

void assignProfiles(RoadNetworkImporter& importer, RoadElevations const& roadElevations,
                    support::Steps& steps) {
  std::map<std::uint64_t, ConstantSequences> levels;  // by the bits of the elevation
  forEachRoad(*importer.roadNetwork.get(), steps, [&](Road const& road) {
    double const onRoad = roadElevations.at(road->getID());
    double const atStart = road->getStartNode()->getElevation();
    double const atEnd = road->getEndNode()->getElevation();
    RoadSegment const segment = road->getRoadSegments()[0];
    std::size_t const n = segment->getCentersX().size();
    bool const isLevel = onRoad == atStart && onRoad == atEnd;
    segment->setGeometry(
        segment->getCentersX(), segment->getCentersY(),
        isLevel
            ? levels.try_emplace(std::bit_cast<std::uint64_t>(onRoad), onRoad).first->second.of(n)
            : ConstantSequences::Sequence(elevationProfile(n, atStart, onRoad, atEnd)),
        segment->getBankingAngles(), segment->getHeadings());
  });
}

}  // namespace

void assignSegmentElevations(RoadNetworkImporter& importer) {
  auto const& network = importer.roadNetwork;
  support::Steps steps(importer.progress(), support::Stage::settingElevations,
                       importer.roadWayIds.maxRoadId() + 1 + network->getNodes().size() +
                           network->getRoads().size());
  RoadElevations const roadElevations = computeRoadElevations(importer, steps);
  assignNodeElevations(importer, roadElevations, steps);
  assignProfiles(importer, roadElevations, steps);
}
