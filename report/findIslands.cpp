#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "report/fillFinding.hpp"
#include "report/finders.hpp"
#include "report/roadLength.hpp"

using velora::roadnetwork::Road;

namespace {

constexpr double longIsland = 1000.0;  // metres

struct Island {
  std::vector<Road const*> roads;
  std::int64_t nodes = 0;
  double metres = 0.0;
};

}  // namespace

void findIslands(RoadNetworkImporter const& importer, RoadGraph const& graph,
                 ImportReport& report) {
  constexpr auto none = std::numeric_limits<std::size_t>::max();
  std::vector<Island> islands;
  std::vector<std::size_t> islandOf(graph.nodes.size(), none);  // by part
  auto const& roads = importer.roadNetwork->getRoads();
  support::Steps steps(importer.progress(), support::Stage::findingIslands,
                       graph.parts.size() + roads.size());
  for (auto const part : graph.parts) {
    steps.step();
    if (part == graph.largestPart) continue;
    if (islandOf[part] == none) islandOf[part] = islands.size();
    if (islandOf[part] == islands.size()) islands.emplace_back();
    ++islands[islandOf[part]].nodes;
  }
  for (std::size_t i = 0; i < roads.size(); ++i) {
    steps.step();
    auto const part = graph.parts[graph.roads[i].start];
    if (part == graph.largestPart) continue;
    Island& island = islands[islandOf[part]];
    island.roads.push_back(&roads[i]);
    island.metres += roadLength(roads[i]);
  }
  std::stable_sort(islands.begin(), islands.end(),
                   [](auto const& a, auto const& b) { return a.metres > b.metres; });
  for (Island& island : islands) {
    std::sort(island.roads.begin(), island.roads.end(),
              [](Road const* a, Road const* b) { return (*a)->getID() < (*b)->getID(); });
    Finding finding{.kind = Finding::Kind::islands,
                    .severity = island.metres > longIsland ? Severity::high : Severity::low,
                    .details = {{"roadCount", static_cast<std::int64_t>(island.roads.size())},
                                {"nodeCount", island.nodes}},
                    .metres = island.metres};
    for (Road const* const road : island.roads) {
      steps.poll();
      addWaysOf(*road->get(), importer, finding);
      finding.stretches.push_back(
          {(*road)->getCentersX().values(), (*road)->getCentersY().values()});
    }
    report.add(std::move(finding));
  }
}
