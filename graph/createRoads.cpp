#include "graph/createRoads.hpp"

#include <boost/uuid/uuid.hpp>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/lookup.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::modelId;
using OpenStreetMap::Way;
using OpenStreetMap::WayNodes;
using support::lookup;
using velora::roadnetwork::DirectionOfTravel;
using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

// A piece of a way between two junctions, both included. Road ids count the pieces from 1.
struct Piece {
  Way const* way;
  std::span<WayNodes::Number const> nodes;
};

std::vector<Piece> cutWays(RoadNetworkImporter& importer) {
  std::vector<Piece> pieces;
  pieces.reserve(2 * importer.selectedWays.size());
  importer.roadWayIds.clear();
  importer.roadWayIds.reserve(importer.selectedWays.size());
  for (Way const* const way : importer.selectedWays) {
    auto const nodes = importer.reader.wayNodes.numbersOf(*way);
    // Both ends of a way are junctions: the first opens a road, the last closes one. A junction
    // between them does both.
    std::size_t start = 0;
    for (std::size_t i = 1; i < nodes.size(); ++i) {
      if (!importer.junctionNodeIds.contains(nodes[i])) continue;
      pieces.push_back({way, nodes.subspan(start, i - start + 1)});
      importer.roadWayIds.emplace(pieces.size(), way->id);
      start = i;
    }
  }
  return pieces;
}

// Destroys a road that is not finished when something fails, so that no Node lists it.
struct DestroyRoad {
  void operator()(velora::roadnetwork::RoadImpl* road) const { road->destroy(); }
};

class RoadMaker {
 public:
  explicit RoadMaker(RoadNetworkImporter& importer) : importer_(importer) {
    // Both ascend by the nodes' ids, so no Node is looked up.
    auto node = importer.roadNetwork->getNodes().begin();
    auto const end = importer.roadNetwork->getNodes().end();
    nodes_.resize(importer.reader.wayNodes.size());
    WayNodes::Number number = 0;
    importer.reader.wayNodes.forEachId([&](Id id) {
      if (importer.junctionNodeIds.contains(number)) {
        while (node != end && node->first < modelId(id)) ++node;
        if (node != end && node->first == modelId(id)) nodes_[number] = node->second;
      }
      ++number;
    });
  }

  void addRoad(RoadWayIds::RoadId id, Piece const& piece) {
    setWay(*piece.way);
    Road const road = Road::create(importer_.model, boost::uuids::uuid{});
    std::unique_ptr<velora::roadnetwork::RoadImpl, DestroyRoad> unfinished(road.get());
    road->setID(id);
    road->setName(*name_);
    road->setDirection(direction_);
    road->setStartNode(nodes_[piece.nodes.front()]);
    road->setEndNode(nodes_[piece.nodes.back()]);

    importer_.reader.populate(importer_.reader.nodes);
    x_.clear();
    y_.clear();
    for (WayNodes::Number const number : piece.nodes) {
      auto const& [latitude, longitude] = importer_.reader.wayNodes[number];
      x_.push_back(latitude);
      y_.push_back(longitude);
    }
    road->setCenters(x_, y_);
    importer_.roadNetwork->addRoad(road);
    static_cast<void>(unfinished.release());
  }

 private:
  // The roads of a way come one after the other.
  void setWay(Way const& way) {
    if (way_ == &way) return;
    name_ = &lookup(importer_.wayNames, way.id);
    direction_ = lookup(importer_.wayDirections, way.id);
    way_ = &way;
  }

  RoadNetworkImporter& importer_;
  std::vector<Node> nodes_;  // by number; null but for junctions
  Way const* way_ = nullptr;
  std::u16string const* name_ = nullptr;
  DirectionOfTravel direction_ = DirectionOfTravel::both;
  std::vector<double> x_;
  std::vector<double> y_;
};

}  // namespace

void createRoads(RoadNetworkImporter& importer) {
  std::vector<Piece> const pieces = cutWays(importer);
  RoadMaker maker(importer);
  for (std::size_t i = 0; i < pieces.size(); ++i) maker.addRoad(i + 1, pieces[i]);
}
