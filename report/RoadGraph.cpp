#include "report/RoadGraph.hpp"

#include <algorithm>
#include <numeric>

#include "importer/walk.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

// The Nodes know their roads, so that none of them has to be looked up by its id.
RoadGraph::RoadGraph(RoadNetworkImporter const& importer)
    : roads(importer.roadNetwork->getRoads().size()) {
  auto const& network = importer.roadNetwork;
  std::size_t const count = network->getNodes().size();
  support::Steps steps(importer.progress(), support::Stage::connecting, 2 * count + roads.size());
  nodes.reserve(count);
  forEachNode(*network.get(), steps, [&](Node const& node) {
    auto const number = static_cast<Number>(nodes.size());
    nodes.push_back(&node);
    for (Road const& road : node->getOutgoingRoads()) roads[road->getNetworkSlot()].start = number;
    for (Road const& road : node->getIncomingRoads()) roads[road->getNetworkSlot()].end = number;
  });

  DisjointSets connected(nodes.size());
  for (Ends const& road : roads) {
    connected.join(road.start, road.end);
    steps.step();
  }
  std::vector<Number> sizes(nodes.size());
  parts.reserve(nodes.size());
  for (Number node = 0; node < nodes.size(); ++node) {
    ++sizes[parts.emplace_back(connected.find(node))];
    steps.step();
  }
  largestPart = static_cast<Number>(std::max_element(sizes.begin(), sizes.end()) - sizes.begin());
}

DisjointSets::DisjointSets(std::size_t count) : parents_(count) {
  std::iota(parents_.begin(), parents_.end(), Number{0});
}

DisjointSets::Number DisjointSets::find(Number member) noexcept {
  while (parents_[member] != member) {
    parents_[member] = parents_[parents_[member]];
    member = parents_[member];
  }
  return member;
}

// Always towards the lower: with the paths that `find` halves, no chain of them gets long.
void DisjointSets::join(Number one, Number other) noexcept {
  one = find(one);
  other = find(other);
  parents_[std::max(one, other)] = std::min(one, other);
}
