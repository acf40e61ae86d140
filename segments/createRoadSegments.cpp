#include "segments/createRoadSegments.hpp"

#include <boost/uuid/uuid.hpp>
#include <limits>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "segments/ConstantSequences.hpp"
#include "support/lookup.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;
using velora::roadnetwork::RoadSegment;
using velora::roadnetwork::RoadSegmentNode;

namespace {

// The segment nodes at the two ends of a road; null as long as they are not known.
struct Ends {
  RoadSegmentNode start;
  RoadSegmentNode end;
};

// Of each road, in the order of the network's list: the Nodes know their roads, so that none of
// them has to be looked up by its id.
std::vector<Ends> createSegmentNodes(RoadNetworkImporter& importer) {
  std::vector<Road> const& roads = importer.roadNetwork->getRoads();
  std::vector<Ends> ends(roads.size());
  auto const set = [&](Road const& road, RoadSegmentNode Ends::*end, RoadSegmentNode const& node) {
    std::size_t const slot = road->getNetworkSlot();
    // A host may have a road at a Node of the network that is not in the network itself.
    if (slot < roads.size() && roads[slot] == road) ends[slot].*end = node;
  };
  for (auto const& [id, node] : importer.roadNetwork->getNodes()) {
    RoadSegmentNode const segmentNode =
        RoadSegmentNode::create(importer.model, boost::uuids::uuid{});
    segmentNode->setID(id);
    for (Road const& road : node->getOutgoingRoads()) set(road, &Ends::start, segmentNode);
    for (Road const& road : node->getIncomingRoads()) set(road, &Ends::end, segmentNode);
  }
  return ends;
}

RoadSegmentNode const& required(RoadSegmentNode const& segmentNode, Node const& node) {
  if (!segmentNode) {
    static_cast<void>(node.operator->());  // throws for a road that has no Node there at all
    support::throwMissing();
  }
  return segmentNode;
}

}  // namespace

void createRoadSegments(RoadNetworkImporter& importer) {
  std::vector<Ends> const ends = createSegmentNodes(importer);
  ConstantSequences constants;
  for (std::size_t i = 0; i < ends.size(); ++i) {
    Road const& road = importer.roadNetwork->getRoads()[i];
    RoadSegment const segment = RoadSegment::create(importer.model, boost::uuids::uuid{});
    segment->setID(road->getID());
    segment->setStartNode(required(ends[i].start, road->getStartNode()));
    segment->setEndNode(required(ends[i].end, road->getEndNode()));
    std::size_t const n = road->getCentersX().size();
    ConstantSequences::Sequence const zeros = constants.of(n, 0.0);
    ConstantSequences::Sequence const notComputed =
        constants.of(n, std::numeric_limits<double>::quiet_NaN());
    segment->setGeometry(road->getCentersX(), road->getCentersY(), zeros, zeros, notComputed);
    road->addRoadSegment(segment);
  }
}
