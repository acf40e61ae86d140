#include "graph/createRoads.hpp"

#include <boost/uuid/uuid.hpp>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/lookup.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::modelId;
using OpenStreetMap::Node;
using OpenStreetMap::Way;
using support::lookup;
using velora::roadnetwork::Road;

namespace {

// Road `id` runs through the nodes at place id - 1, both ends included.
using RoadNodeIds = std::vector<std::vector<Id>>;

RoadNodeIds cutWays(RoadNetworkImporter& importer) {
  RoadNodeIds roads;
  roads.reserve(2 * importer.selectedWays.size());
  importer.roadWayIds.clear();
  importer.roadWayIds.reserve(importer.selectedWays.size());
  for (Way const* const way : importer.selectedWays) {
    auto const& references = way->nodeReferences;
    for (std::size_t i = 0; i < references.size(); ++i) {
      // Both ends of a way are junctions: the first opens a road, the last closes one. A junction
      // between them does both.
      if (importer.junctionNodeIds.contains(references[i])) {
        if (i > 0) roads.back().push_back(references[i]);
        if (i + 1 == references.size()) break;
        roads.emplace_back();
        importer.roadWayIds.emplace(roads.size(), way->id);
      }
      roads.back().push_back(references[i]);
    }
  }
  return roads;
}

void addRoad(RoadNetworkImporter& importer, RoadNetworkImporter::RoadId id,
             std::vector<Id> const& nodeIds) {
  auto const& network = importer.roadNetwork;
  Id const way = lookup(importer.roadWayIds, id);
  Road const road = Road::create(importer.model, boost::uuids::uuid{});
  road->setID(id);
  road->setName(lookup(importer.wayNames, way));
  road->setDirection(lookup(importer.wayDirections, way));
  road->setStartNode(network->getNodes()[modelId(nodeIds.front())]);
  road->setEndNode(network->getNodes()[modelId(nodeIds.back())]);

  importer.reader.populate(importer.reader.nodes);
  std::vector<double> x;
  std::vector<double> y;
  x.reserve(nodeIds.size());
  y.reserve(nodeIds.size());
  for (Node const* const node : importer.reader.getElements(importer.reader.nodes, nodeIds)) {
    x.push_back(node->first);
    y.push_back(node->second);
  }
  road->setCenters(x, y);
  network->addRoad(road);
}

}  // namespace

void createRoads(RoadNetworkImporter& importer) {
  RoadNodeIds const roads = cutWays(importer);
  for (std::size_t i = 0; i < roads.size(); ++i) addRoad(importer, i + 1, roads[i]);
}
