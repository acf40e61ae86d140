#include "graph/createNodes.hpp"

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/ModelId.hpp"
#include "support/ustring.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::modelId;
using OpenStreetMap::Way;
using OpenStreetMap::WayNodes;
using support::ModelId;
using velora::roadnetwork::RoadNetwork;

namespace {

// In one call, as a network's own class may expect it.
void addNodes(RoadNetworkImporter& importer, std::vector<ModelId> const& ids,
              std::vector<std::u16string> const& names, std::vector<double> const& positions,
              support::Steps& steps) {
  struct Watch {
    Watch(RoadNetwork const& network, std::function<void()> watcher) : network_(network) {
      network_->setNodeWatcher(std::move(watcher));
    }
    Watch(Watch const&) = delete;
    Watch& operator=(Watch const&) = delete;
    ~Watch() { network_->setNodeWatcher({}); }
    RoadNetwork const& network_;
  };
  Watch const watch(importer.roadNetwork, [&] { steps.step(); });
  importer.roadNetwork->addNodes(ids, names, positions);
}

}  // namespace

std::vector<NodeUse> countNodeUses(RoadNetworkImporter const& importer) {
  auto const& nodes = importer.reader.wayNodes;
  support::Steps steps(importer.progress(), support::Stage::findingJunctions,
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
  support::Steps steps(importer.progress(), support::Stage::makingNodes,
                       nodes.size() + junctions.size());

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
  addNodes(importer, ids, names, positions, steps);
  steps.finish();
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
