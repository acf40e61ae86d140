#include "graph/createNodes.hpp"

#include <string>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/ModelId.hpp"
#include "support/ustring.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::modelId;
using OpenStreetMap::Way;
using OpenStreetMap::WayNodes;
using support::ModelId;

std::vector<NodeUse> countNodeUses(RoadNetworkImporter const& importer) {
  auto const& nodes = importer.reader.wayNodes;
  support::Steps steps(importer.progress(), support::Stage::makingNodes,
                       importer.selectedWays.size());
  std::vector<NodeUse> uses(nodes.size());
  for (Way const* const way : importer.selectedWays) {
    auto const numbers = nodes.numbersOf(*way);
    uses[numbers.front()].addEnd();
    uses[numbers.back()].addEnd();
    for (WayNodes::Number const number : numbers.subspan(1, numbers.size() - 2)) {
      uses[number].addPass();
    }
    steps.step();
  }
  return uses;
}

void createJunctionNodes(RoadNetworkImporter& importer) {
  auto const& nodes = importer.reader.wayNodes;
  auto const& junctions = importer.junctionNodeIds;
  support::Steps steps(importer.progress(), support::Stage::makingNodes, nodes.size());
  std::vector<ModelId> ids;
  std::vector<std::u16string> names;
  std::vector<double> positions;
  ids.reserve(junctions.size());
  names.reserve(junctions.size());
  positions.reserve(3 * junctions.size());
  nodes.forEach([&](WayNodes::Number number, Id id) {
    steps.step();
    if (!junctions.contains(number)) return;
    ids.push_back(modelId(id));
    names.push_back(support::decimal(id));
    positions.insert(positions.end(), {nodes[number].latitude, nodes[number].longitude, 0.0});
  });
  importer.roadNetwork->addNodes(ids, names, positions);
}

void createNodes(RoadNetworkImporter& importer) {
  importer.reader.populate(importer.reader.nodes);
  std::vector<NodeUse> const uses = countNodeUses(importer);
  importer.junctionNodeIds = JunctionNodes(uses.size());
  for (WayNodes::Number number = 0; number < uses.size(); ++number) {
    if (uses[number].isJunction()) importer.junctionNodeIds.insert(number);
  }
  createJunctionNodes(importer);
}
