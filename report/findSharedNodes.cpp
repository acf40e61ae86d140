#include <algorithm>
#include <cstdint>
#include <vector>

#include "report/finders.hpp"
#include "tags/layer.hpp"

using OpenStreetMap::Way;

void findSharedNodes(RoadNetworkImporter const& importer, ImportReport& report) {
  auto const& ways = importer.selectedWays;
  std::vector<double> elevations;
  elevations.reserve(ways.size());
  support::Steps steps(importer.progress(), support::Stage::checkingSharedNodes, 2 * ways.size());
  for (Way const* const way : ways) {
    elevations.push_back(wayLayerElevation(way->tags));
    steps.step();
  }
  if (std::all_of(elevations.begin(), elevations.end(),
                  [&](double elevation) { return elevation == elevations.front(); })) {
    return steps.finish();
  }
  auto const& nodes = importer.reader.wayNodes;
  std::vector<std::uint32_t> firstUses(nodes.size());  // 0 for none, else one more than the way's
  for (std::uint32_t i = 0; i < ways.size(); ++i) {
    steps.step();
    auto const numbers = nodes.numbersOf(*ways[i]);
    for (std::size_t k = 1; k + 1 < numbers.size(); ++k) {
      auto& firstUse = firstUses[numbers[k]];
      if (firstUse == 0) firstUse = i + 1;
      if (elevations[firstUse - 1] == elevations[i]) continue;
      report.add({.kind = Finding::Kind::sharedNodes,
                  .severity = Severity::medium,
                  .ways = {ways[firstUse - 1], ways[i]},
                  .nodes = {ways[i]->nodeReferences[k]},
                  .points = {nodes[numbers[k]]}});
    }
  }
}
