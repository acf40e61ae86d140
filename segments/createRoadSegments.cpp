#include "segments/createRoadSegments.hpp"

#include <boost/uuid/uuid.hpp>
#include <limits>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "importer/walk.hpp"
#include "segments/ConstantSequences.hpp"
#include "support/lookup.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadImpl;
using velora::roadnetwork::RoadSegment;
using velora::roadnetwork::RoadSegmentNode;
using velora::roadnetwork::RoadSegmentNodeImpl;

namespace {

// The segment nodes at the two ends of a road; null as long as they are not known.
struct Ends {
  RoadSegmentNode start;
  RoadSegmentNode end;
};

// Of each road, in the order of the network's list: the Nodes know their roads, so that none of
// them has to be looked up by its id.
std::vector<Ends> createSegmentNodes(RoadNetworkImporter& importer, support::Steps& steps) {
  std::vector<Road> const& roads = importer.roadNetwork->getRoads();
  std::vector<Ends> ends(roads.size());
  auto const set = [&](Road const& road, RoadSegmentNode Ends::*end, RoadSegmentNode const& node) {
    std::size_t const slot = road->getNetworkSlot();
    // A host may have a road at a Node of the network that is not in the network itself.
    if (slot < roads.size() && roads[slot] == road) ends[slot].*end = node;
  };
  forEachNode(*importer.roadNetwork.get(), steps, [&](Node const& node) {
    RoadSegmentNode const segmentNode =
        RoadSegmentNode::create(importer.model, boost::uuids::uuid{});
    segmentNode->setID(node->getID());
    for (Road const& road : node->getOutgoingRoads()) set(road, &Ends::start, segmentNode);
    for (Road const& road : node->getIncomingRoads()) set(road, &Ends::end, segmentNode);
  });
  return ends;
}

RoadSegmentNode const& required(RoadSegmentNode const& segmentNode, Road const& road,
                                Node (RoadImpl::*node)() const noexcept) {
  if (!segmentNode) {
    // Throws for a road that has no Node there at all.
    static_cast<void>((road.get()->*node)().operator->());
    support::throwMissing();
  }
  return segmentNode;
}

}  // namespace

void createRoadSegments(RoadNetworkImporter& importer) {
  auto const& network = importer.roadNetwork;
  support::Steps steps(importer.progress(), support::Stage::makingSegments,
                       network->getNodes().size() + network->getRoads().size());
  std::vector<Ends> const ends = createSegmentNodes(importer, steps);
  ConstantSequences zeros(0.0);
  ConstantSequences notComputed(std::numeric_limits<double>::quiet_NaN());
  for (std::size_t i = 0; i < ends.size(); ++i) {
    if (i + walkAhead < ends.size()) {
      importer.roadNetwork->getRoads()[i + walkAhead]->prefetchCenters();
      RoadSegmentNodeImpl::prefetch(ends[i + walkAhead].start.get());
      RoadSegmentNodeImpl::prefetch(ends[i + walkAhead].end.get());
    }
    Road const& road = importer.roadNetwork->getRoads()[i];
    RoadSegment const segment = RoadSegment::create(importer.model, boost::uuids::uuid{});
    segment->setID(road->getID());
    segment->setStartNode(required(ends[i].start, road, &RoadImpl::getStartNode));
    segment->setEndNode(required(ends[i].end, road, &RoadImpl::getEndNode));
    std::size_t const n = road->getCentersX().size();
    segment->setGeometry(road->getCentersX(), road->getCentersY(), zeros.of(n), zeros.of(n),
                         notComputed.of(n));
    road->addRoadSegment(segment);
    steps.step();
  }
}
