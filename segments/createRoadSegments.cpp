#include "segments/createRoadSegments.hpp"

#include <boost/uuid/uuid.hpp>
#include <limits>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/lookup.hpp"

using support::lookup;
using velora::roadnetwork::RoadSegment;
using velora::roadnetwork::RoadSegmentNode;

namespace {

using SegmentNodes = support::ModelIdMap<RoadSegmentNode>;

SegmentNodes createSegmentNodes(RoadNetworkImporter& importer) {
  auto const& nodes = importer.roadNetwork->getNodes();
  SegmentNodes segmentNodesByNodeId(nodes.size());
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
  std::vector<double> x;
  std::vector<double> y;
  std::vector<double> zeros;
  std::vector<double> notComputed;
  for (auto const& road : importer.roadNetwork->getRoads()) {
    auto const& centersX = road->getCentersX();
    auto const& centersY = road->getCentersY();
    RoadSegment const segment = RoadSegment::create(importer.model, boost::uuids::uuid{});
    segment->setID(road->getID());
    segment->setStartNode(lookup(segmentNodes, road->getStartNode()->getID()));
    segment->setEndNode(lookup(segmentNodes, road->getEndNode()->getID()));
    std::size_t const n = centersX.size();
    x.assign(centersX.begin(), centersX.end());
    y.assign(centersY.begin(), centersY.end());
    zeros.assign(n, 0.0);
    notComputed.assign(n, std::numeric_limits<double>::quiet_NaN());
    segment->setGeometry(x, y, zeros, zeros, notComputed);
    road->addRoadSegment(segment);
  }
}
