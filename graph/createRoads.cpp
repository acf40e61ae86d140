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
using support::lookup;
using velora::roadnetwork::DirectionOfTravel;
using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

// A piece of a way between two junctions, both included. Road ids count the pieces from 1.
struct Piece {
  Way const* way;
  std::span<Id const> nodeIds;
  std::span<std::uint32_t const> nodeNumbers;  // in the reader's table
};

std::vector<Piece> cutWays(RoadNetworkImporter& importer) {
  std::vector<Piece> pieces;
  pieces.reserve(2 * importer.selectedWays.size());
  importer.roadWayIds.clear();
  importer.roadWayIds.reserve(importer.selectedWays.size());
  std::span<std::uint32_t const> numbers = importer.wayNodeNumbers;
  for (Way const* const way : importer.selectedWays) {
    auto const& references = way->nodeReferences;
    if (numbers.size() < references.size()) support::throwMissing();
    // Both ends of a way are junctions: the first opens a road, the last closes one. A junction
    // between them does both.
    std::size_t start = 0;
    for (std::size_t i = 1; i < references.size(); ++i) {
      if (!importer.junctionNodeIds.contains(references[i])) continue;
      std::size_t const count = i - start + 1;
      pieces.push_back({way, references.subspan(start, count), numbers.subspan(start, count)});
      importer.roadWayIds.emplace(pieces.size(), way->id);
      start = i;
    }
    numbers = numbers.subspan(references.size());
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
    // Two lookups a road: a hash table is several times faster than the network's ordered map.
    auto const& nodes = importer.roadNetwork->getNodes();
    nodes_.reserve(nodes.size());
    for (auto const& [id, node] : nodes) nodes_.try_emplace(id, node);
  }

  void addRoad(RoadWayIds::RoadId id, Piece const& piece) {
    setWay(*piece.way);
    Road const road = Road::create(importer_.model, boost::uuids::uuid{});
    std::unique_ptr<velora::roadnetwork::RoadImpl, DestroyRoad> unfinished(road.get());
    road->setID(id);
    road->setName(*name_);
    road->setDirection(direction_);
    road->setStartNode(nodeOf(piece.nodeIds.front()));
    road->setEndNode(nodeOf(piece.nodeIds.back()));

    importer_.reader.populate(importer_.reader.nodes);
    x_.clear();
    y_.clear();
    for (std::uint32_t const number : piece.nodeNumbers) {
      OpenStreetMap::Node const& node = importer_.reader.nodes[number];
      x_.push_back(node.first);
      y_.push_back(node.second);
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

  Node nodeOf(Id id) const {
    auto const found = nodes_.find(modelId(id));
    return found == nodes_.end() ? Node() : found->second;
  }

  RoadNetworkImporter& importer_;
  support::ModelIdMap<Node> nodes_;
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
  importer.wayNodeNumbers = {};  // nobody needs them any more
}
