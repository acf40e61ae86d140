// The order of every output.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>
#include <vector>

#include "model/roadnetwork/RoadNetwork.hpp"

/// Called after each element that was written, with how many are done, of how many.
using Progress = std::function<void(std::size_t done, std::size_t total)>;

/// Goes through a network's nodes and roads by ascending id and tells how far it has come.
class NetworkWalk {
 public:
  using Node = velora::roadnetwork::Node;
  using Road = velora::roadnetwork::Road;

  NetworkWalk(velora::roadnetwork::RoadNetwork const& network, Progress progress)
      : network_(network),
        progress_(std::move(progress)),
        total_(network->getNodes().size() + network->getRoads().size()) {}

  template <class Action>
  void forEachNode(Action const& action) {
    for (auto const& [id, node] : network_->getNodes()) {
      action(node);
      step();
    }
  }

  template <class Action>
  void forEachRoad(Action const& action) {
    std::vector<Road> roads = network_->getRoads();
    std::sort(roads.begin(), roads.end(),
              [](Road const& a, Road const& b) { return a->getID() < b->getID(); });
    for (Road const& road : roads) {
      action(road);
      step();
    }
  }

 private:
  void step() {
    ++done_;
    if (progress_) progress_(done_, total_);
  }

  velora::roadnetwork::RoadNetwork const& network_;
  Progress progress_;
  std::size_t done_ = 0;
  std::size_t total_;
};
