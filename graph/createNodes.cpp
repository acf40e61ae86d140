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

namespace {

void findJunctions(RoadNetworkImporter& importer, support::Steps& steps) {
  auto const& nodes = importer.reader.wayNodes;
  importer.junctionNodeIds = JunctionNodes(nodes.size());
  auto& junctions = importer.junctionNodeIds;
  std::vector<bool> isInterior(nodes.size());
  for (Way const* const way : importer.selectedWays) {
    auto const numbers = nodes.numbersOf(*way);
    junctions.insert(numbers.front());
    junctions.insert(numbers.back());
    for (WayNodes::Number const number : numbers.subspan(1, numbers.size() - 2)) {
      // That there is more than one use is enough to know.
      if (isInterior[number]) junctions.insert(number);
      isInterior[number] = true;
    }
    steps.step();
  }
}

}  // namespace

void createNodes(RoadNetworkImporter& importer) {
  importer.reader.populate(importer.reader.nodes);
  auto const& nodes = importer.reader.wayNodes;
  support::Steps steps(importer.progress(), support::Stage::makingNodes,
                       importer.selectedWays.size() + nodes.size());
  findJunctions(importer, steps);
  auto const& junctions = importer.junctionNodeIds;

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
