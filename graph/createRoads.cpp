#include "graph/createRoads.hpp"

#include <boost/uuid/uuid.hpp>
#include <span>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/lookup.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::modelId;
using OpenStreetMap::Way;
using support::lookup;
using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

// A piece of a way between two junctions, both included. Road ids count the pieces from 1.
struct Piece {
  Way const* way;
  std::span<Id const> nodeIds;
};

std::vector<Piece> cutWays(RoadNetworkImporter& importer) {
  std::vector<Piece> pieces;
  pieces.reserve(2 * importer.selectedWays.size());
  importer.roadWayIds.clear();
  importer.roadWayIds.reserve(importer.selectedWays.size());
  for (Way const* const way : importer.selectedWays) {
    auto const& references = way->nodeReferences;
    // Both ends of a way are junctions: the first opens a road, the last closes one. A junction
    // between them does both.
    std::size_t start = 0;
    for (std::size_t i = 1; i < references.size(); ++i) {
      if (!importer.junctionNodeIds.contains(references[i])) continue;
      pieces.push_back({way, references.subspan(start, i - start + 1)});
      importer.roadWayIds.emplace(pieces.size(), way->id);
      start = i;
    }
  }
  return pieces;
}

class RoadMaker {
 public:
  explicit RoadMaker(RoadNetworkImporter& importer) : importer_(importer) {}

  void addRoad(RoadWayIds::RoadId id, Piece const& piece) {
    Road const road = Road::create(importer_.model, boost::uuids::uuid{});
    road->setID(id);
    road->setName(lookup(importer_.wayNames, piece.way->id));
    road->setDirection(lookup(importer_.wayDirections, piece.way->id));
    road->setStartNode(nodeOf(piece.nodeIds.front()));
    road->setEndNode(nodeOf(piece.nodeIds.back()));

    importer_.reader.populate(importer_.reader.nodes);
    x_.clear();
    y_.clear();
    for (Id const nodeId : piece.nodeIds) {
      OpenStreetMap::Node const& node = importer_.reader.nodes.at(nodeId);
      x_.push_back(node.first);
      y_.push_back(node.second);
    }
    road->setCenters(x_, y_);
    importer_.roadNetwork->addRoad(road);
  }

 private:
  // Mostly the same as in the last call: a road of a way starts where the one before it ends.
  Node const& nodeOf(Id id) {
    if (!node_ || node_->getID() != modelId(id)) {
      node_ = importer_.roadNetwork->getNodes()[modelId(id)];
    }
    return node_;
  }

  RoadNetworkImporter& importer_;
  Node node_;
  std::vector<double> x_;
  std::vector<double> y_;
};

}  // namespace

void createRoads(RoadNetworkImporter& importer) {
  std::vector<Piece> const pieces = cutWays(importer);
  RoadMaker maker(importer);
  for (std::size_t i = 0; i < pieces.size(); ++i) maker.addRoad(i + 1, pieces[i]);
}
