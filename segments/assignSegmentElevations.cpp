#include "segments/assignSegmentElevations.hpp"

#include <bit>
#include <cstdint>
#include <map>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "importer/walk.hpp"
#include "segments/ConstantSequences.hpp"
#include "segments/RoadElevations.hpp"
#include "segments/elevationProfile.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadSegment;

namespace {

void assignNodeElevations(RoadNetworkImporter& importer, RoadElevations const& roadElevations,
                          support::Steps& steps) {
  std::vector<double> position;
  forEachNode(*importer.roadNetwork.get(), steps, [&](Node const& node) {
    if (!node->hasPosition()) return;
    Mean mean;
    for (auto const& roads : {node->getIncomingRoads(), node->getOutgoingRoads()}) {
      for (auto const& road : roads) mean.add(roadElevations.at(road->getID()));
    }
    position.assign(node->getPosition().begin(), node->getPosition().end());
    position[2] = mean.value();  // NaN for a Node without roads
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
    segment->setGeometry(
        segment->getCentersX(), segment->getCentersY(),
        isLevel(atStart, onRoad, atEnd)
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
  RoadElevations const roadElevations(importer, steps);
  assignNodeElevations(importer, roadElevations, steps);
  assignProfiles(importer, roadElevations, steps);
}
