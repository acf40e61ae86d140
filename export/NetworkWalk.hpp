// The order of every output.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "importer/walk.hpp"

/// The network's roads, by ascending id.
inline std::vector<velora::roadnetwork::Road const*> roadsById(
    velora::roadnetwork::RoadNetworkImpl const& network, support::Steps& steps) {
  using velora::roadnetwork::Road;
  using Entry = std::pair<support::ModelId, Road const*>;  // ids at hand sort in half the time
  std::vector<Entry> entries;
  entries.reserve(network.getRoads().size());
  for (Road const& road : network.getRoads()) entries.emplace_back(road->getID(), &road);
  std::sort(entries.begin(), entries.end(),
            steps.polling([](Entry const& a, Entry const& b) { return a.first < b.first; }));
  std::vector<Road const*> roads;
  roads.reserve(entries.size());
  for (Entry const& entry : entries) roads.push_back(entry.second);
  return roads;
}

/// Goes through a network's nodes and roads by ascending id, each of them once, as one stage.
class NetworkWalk {
 public:
  using Node = velora::roadnetwork::Node;
  using Road = velora::roadnetwork::Road;

  /// The importer must have run.
  explicit NetworkWalk(RoadNetworkImporter const& importer,
                       support::Stage stage = support::Stage::writing)
      : network_(importer.roadNetwork),
        steps_(importer.progress(), stage,
               network_->getNodes().size() + network_->getRoads().size()) {}

  /// For what is done between the elements.
  support::Steps& steps() noexcept { return steps_; }

  template <class Action>
  void forEachNode(Action const& action) {
    for (auto const& [id, node] : network_->getNodes()) {
      action(node);
      steps_.step();
    }
  }

  template <class Action>
  void forEachRoad(Action const& action) {
    std::vector<Road const*> const roads = roadsById(*network_.get(), steps_);
    for (std::size_t i = 0; i < roads.size(); ++i) {
      if (i + walkAhead < roads.size()) {
        (*roads[i + walkAhead])->prefetchNodes();
        (*roads[i + walkAhead])->prefetchCenters();
        (*roads[i + walkAhead])->prefetchSegments();
      }
      if (i + walkAhead / 2 < roads.size()) (*roads[i + walkAhead / 2])->prefetchElevations();
      action(*roads[i]);
      steps_.step();
    }
  }

 private:
  velora::roadnetwork::RoadNetwork const& network_;
  support::Steps steps_;
};
