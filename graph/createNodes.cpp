#include "graph/createNodes.hpp"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/ModelId.hpp"
#include "support/ustring.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::modelId;
using OpenStreetMap::Node;
using OpenStreetMap::Way;

namespace {

std::vector<Id> findJunctions(RoadNetworkImporter& importer) {
  auto& junctions = importer.junctionNodeIds;
  std::size_t const expected = 2 * importer.selectedWays.size();
  junctions.reserve(expected);
  importer.reader.populate(importer.reader.nodes);
  auto const& nodes = importer.reader.nodes;
  // By node number. That there are two is enough to know.
  std::vector<std::uint8_t> interiorUseCounts(nodes.size());
  importer.wayNodeNumbers.clear();
  for (Way const* const way : importer.selectedWays) {
    auto const& references = way->nodeReferences;
    junctions.insert(references.front());
    junctions.insert(references.back());
    for (std::size_t i = 0; i < references.size(); ++i) {
      std::uint32_t const number = nodes.numberOf(references[i]);
      importer.wayNodeNumbers.push_back(number);
      bool const isInterior = i > 0 && i + 1 < references.size();
      if (!isInterior || interiorUseCounts[number] == 2) continue;
      if (++interiorUseCounts[number] == 2) junctions.insert(references[i]);
    }
  }
  // In the order of the network's map and, mostly, of the file.
  std::vector<Id> sorted(junctions.begin(), junctions.end());
  std::sort(sorted.begin(), sorted.end(), [](Id a, Id b) { return modelId(a) < modelId(b); });
  return sorted;
}

}  // namespace

void createNodes(RoadNetworkImporter& importer) {
  std::vector<Id> const junctions = findJunctions(importer);
  std::vector<Node const*> const nodes =
      importer.reader.getElements(importer.reader.nodes, junctions);

  std::vector<support::ModelId> ids;
  std::vector<std::u16string> names;
  std::vector<double> positions;
  ids.reserve(junctions.size());
  names.reserve(junctions.size());
  positions.reserve(3 * junctions.size());
  for (Node const* const node : nodes) {
    ids.push_back(modelId(node->id));
    names.push_back(support::decimal(node->id));
    positions.insert(positions.end(), {node->first, node->second, 0.0});
  }
  importer.roadNetwork->addNodes(ids, names, positions);
}
