#include "graph/createNodes.hpp"

#include <cstdint>
#include <string>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/ustring.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::Node;
using OpenStreetMap::Way;

namespace {

std::vector<Id> findJunctions(RoadNetworkImporter& importer) {
  auto& junctions = importer.junctionNodeIds;
  std::size_t const expected = 2 * importer.selectedWays.size();
  junctions.reserve(expected);
  support::IdMap<std::uint64_t> interiorUseCounts(expected);
  for (Way const* const way : importer.selectedWays) {
    auto const& references = way->nodeReferences;
    junctions.insert(references.front());
    junctions.insert(references.back());
    for (Id const id : references.subspan(1, references.size() - 2)) ++interiorUseCounts[id];
  }
  for (auto const& [id, count] : interiorUseCounts) {
    if (count > 1) junctions.insert(id);
  }
  return {junctions.begin(), junctions.end()};
}

}  // namespace

void createNodes(RoadNetworkImporter& importer) {
  std::vector<Id> const junctions = findJunctions(importer);
  importer.reader.populate(importer.reader.nodes);
  std::vector<Node const*> const nodes =
      importer.reader.getElements(importer.reader.nodes, junctions);

  std::vector<unsigned long> ids;
  std::vector<std::u16string> names;
  std::vector<double> positions;
  ids.reserve(junctions.size());
  names.reserve(junctions.size());
  positions.reserve(3 * junctions.size());
  for (Node const* const node : nodes) {
    ids.push_back(OpenStreetMap::modelId(node->id));
    names.push_back(support::decimal(node->id));
    positions.insert(positions.end(), {node->first, node->second, 0.0});
  }
  importer.roadNetwork->addNodes(ids, names, positions);
}
