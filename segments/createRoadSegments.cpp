#include "segments/createRoadSegments.hpp"

#include <boost/uuid/uuid.hpp>
#include <limits>

#include "importer/RoadNetworkImporter.hpp"
#include "segments/ConstantSequences.hpp"
#include "support/lookup.hpp"

using support::lookup;
using velora::roadnetwork::RoadSegment;
using velora::roadnetwork::RoadSegmentNode;

namespace {

using SegmentNodes = support::ModelIdMap<RoadSegmentNode>;

SegmentNodes createSegmentNodes(RoadNetworkImporter& importer) {
  auto const& nodes = importer.roadNetwork->getNodes();
  SegmentNodes segmentNodesByNodeId;
  segmentNodesByNodeId.reserve(nodes.size());  // never rehashed
  for (auto const& [id, node] : nodes) {
    RoadSegmentNode const segmentNode =
        RoadSegmentNode::create(importer.model, boost::uuids::uuid{});
    segmentNode->setID(id);
    segmentNodesByNodeId.try_emplace(id, segmentNode);
  }
  return segmentNodesByNodeId;
}

}  // namespace

void createRoadSegments(RoadNetworkImporter& importer) {
  SegmentNodes const segmentNodes = createSegmentNodes(importer);
  ConstantSequences constants;
  for (auto const& road : importer.roadNetwork->getRoads()) {
    RoadSegment const segment = RoadSegment::create(importer.model, boost::uuids::uuid{});
    segment->setID(road->getID());
    segment->setStartNode(lookup(segmentNodes, road->getStartNode()->getID()));
    segment->setEndNode(lookup(segmentNodes, road->getEndNode()->getID()));
    std::size_t const n = road->getCentersX().size();
    auto const& zeros = constants.of(n, 0.0);
    auto const& notComputed = constants.of(n, std::numeric_limits<double>::quiet_NaN());
    segment->setGeometry(road->getCentersX(), road->getCentersY(), zeros, zeros, notComputed);
    road->addRoadSegment(segment);
  }
}
