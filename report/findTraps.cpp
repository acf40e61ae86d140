#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "report/StrongComponents.hpp"
#include "report/fillFinding.hpp"
#include "report/finders.hpp"

using velora::roadnetwork::DirectionOfTravel;

namespace {

using Number = RoadGraph::Number;

// What two-way roads connect is one vertex, so that only one-way roads are edges: few, mostly.
struct OneWayGraph {
  std::vector<Number> vertices;  // of each Node
  std::size_t count = 0;
  std::vector<OneWayEdge> edges;
  std::vector<std::size_t> roads;  // of each edge
};

OneWayGraph contract(RoadNetworkImporter const& importer, RoadGraph const& graph,
                     support::Steps& steps) {
  OneWayGraph result;
  auto const& roads = importer.roadNetwork->getRoads();
  DisjointSets twoWay(graph.nodes.size());
  std::vector<std::size_t> oneWays;
  for (std::size_t i = 0; i < roads.size(); ++i) {
    steps.step();
    auto const [start, end] = graph.roads[i];
    if (roads[i]->getDirection() == DirectionOfTravel::both) {
      twoWay.join(start, end);
    } else if (graph.parts[start] == graph.largestPart) {
      oneWays.push_back(i);
    }
  }
  result.vertices.resize(graph.nodes.size());
  for (Number node = 0; node < graph.nodes.size(); ++node) {
    steps.step();
    Number const lowest = twoWay.find(node);
    result.vertices[node] =
        lowest == node ? static_cast<Number>(result.count++) : result.vertices[lowest];
  }
  for (std::size_t const i : oneWays) {
    OneWayEdge edge{result.vertices[graph.roads[i].start], result.vertices[graph.roads[i].end]};
    if (roads[i]->getDirection() == DirectionOfTravel::backward) std::swap(edge.from, edge.to);
    if (edge.from == edge.to) continue;
    result.edges.push_back(edge);
    result.roads.push_back(i);
  }
  return result;
}

std::string_view nameOfTrap(bool canLeave, bool canReach) {
  if (canReach) return "can't leave";
  return canLeave ? "can't reach" : "can't leave or reach";
}

}  // namespace

void findTraps(RoadNetworkImporter const& importer, RoadGraph const& graph, ImportReport& report) {
  std::size_t const count = graph.nodes.size();
  support::Steps steps(importer.progress(), support::Stage::findingTraps,
                       graph.roads.size() + 4 * count);
  OneWayGraph const oneWays = contract(importer, graph, steps);
  if (oneWays.edges.empty()) return steps.finish();
  std::vector<Number> const components = strongComponents(oneWays.count, oneWays.edges);
  auto const componentOf = [&](Number node) { return components[oneWays.vertices[node]]; };

  std::vector<Number> sizes(oneWays.count);
  for (Number node = 0; node < count; ++node) {
    steps.step();
    if (graph.parts[node] == graph.largestPart) ++sizes[componentOf(node)];
  }
  // Of components of one size, that with the lowest Node.
  Number largest = componentOf(graph.largestPart);
  for (Number node = 0; node < count; ++node) {
    steps.step();
    if (graph.parts[node] == graph.largestPart && sizes[componentOf(node)] > sizes[largest]) {
      largest = componentOf(node);
    }
  }
  std::vector<OneWayEdge> between;
  for (OneWayEdge const& edge : oneWays.edges) {
    between.push_back({components[edge.from], components[edge.to]});
  }
  std::vector<bool> const canReach = reachableFrom(largest, oneWays.count, between);
  for (OneWayEdge& edge : between) std::swap(edge.from, edge.to);
  std::vector<bool> const canLeave = reachableFrom(largest, oneWays.count, between);

  std::vector<std::vector<Number>> nodes(oneWays.count);
  std::vector<Number> traps;
  for (Number node = 0; node < count; ++node) {
    steps.step();
    Number const component = componentOf(node);
    if (graph.parts[node] != graph.largestPart || component == largest) continue;
    if (nodes[component].empty()) traps.push_back(component);
    nodes[component].push_back(node);
  }
  // The one-way roads that lead in or out are what to look at.
  std::vector<std::vector<std::size_t>> roads(oneWays.count);
  std::vector<bool> hasWayIn(oneWays.count);
  std::vector<bool> hasWayOut(oneWays.count);
  for (std::size_t i = 0; i < between.size(); ++i) {
    auto const& [to, from] = between[i];  // turned round above
    if (from == to) continue;
    roads[from].push_back(oneWays.roads[i]);
    roads[to].push_back(oneWays.roads[i]);
    hasWayOut[from] = true;
    hasWayIn[to] = true;
  }
  std::stable_sort(traps.begin(), traps.end(),
                   [&](Number a, Number b) { return nodes[a].size() > nodes[b].size(); });
  for (Number const trap : traps) {
    steps.poll();
    // Where a way leads out and yet not away, it leads into another trap, which is the one to mend.
    bool const isEffect = (canLeave[trap] || hasWayOut[trap]) && (canReach[trap] || hasWayIn[trap]);
    Finding finding{.kind = Finding::Kind::traps,
                    .severity = isEffect ? Severity::low : Severity::high,
                    .details = {{"trap", nameOfTrap(canLeave[trap], canReach[trap])},
                                {"nodeCount", static_cast<std::int64_t>(nodes[trap].size())}}};
    for (std::size_t const road : roads[trap]) {
      addWaysOf(*importer.roadNetwork->getRoads()[road].get(), importer, finding);
    }
    for (Number const number : nodes[trap]) {
      auto const& node = *graph.nodes[number];
      auto const position = node->getPosition();
      finding.points.push_back({position[0], position[1]});
      if (finding.nodes.size() < namedAtMost) {
        finding.nodes.push_back(OpenStreetMap::osmId(node->getID()));
      }
    }
    report.add(std::move(finding));
  }
}
