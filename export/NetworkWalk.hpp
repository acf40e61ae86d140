// The order of every output.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"

/// The network's roads, by ascending id.
inline std::vector<velora::roadnetwork::Road const*> roadsById(
    velora::roadnetwork::RoadNetworkImpl const& network, support::Steps& steps) {
  using velora::roadnetwork::Road;
  std::vector<Road const*> roads;
  roads.reserve(network.getRoads().size());
  for (Road const& road : network.getRoads()) roads.push_back(&road);
  std::sort(roads.begin(), roads.end(), steps.polling([](Road const* a, Road const* b) {
    return (*a)->getID() < (*b)->getID();
  }));
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

  template <class Action>
  void forEachNode(Action const& action) {
    for (auto const& [id, node] : network_->getNodes()) {
      action(node);
      steps_.step();
    }
  }

  template <class Action>
  void forEachRoad(Action const& action) {
    for (Road const* const road : roadsById(*network_.get(), steps_)) {
      action(*road);
      steps_.step();
    }
  }

 private:
  velora::roadnetwork::RoadNetwork const& network_;
  support::Steps steps_;
};
