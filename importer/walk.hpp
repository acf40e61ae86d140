// Going through a network from element to element.
#pragma once

#include <array>
#include <cstddef>

#include "model/roadnetwork/RoadNetwork.hpp"
#include "support/Progress.hpp"

/// An element's neighbours lie anywhere in memory, and waiting for them is most of what a walk
/// costs. So they are asked for this many elements ahead.
constexpr std::size_t walkAhead = 16;

/// Calls `action` with each Node, in the order of their ids, when its roads are at hand. Each is a
/// step.
template <class Action>
void forEachNode(velora::roadnetwork::RoadNetworkImpl const& network, support::Steps& steps,
                 Action const& action) {
  std::array<velora::roadnetwork::Node const*, walkAhead> batch{};
  auto const& nodes = network.getNodes();
  for (auto next = nodes.begin(); next != nodes.end();) {
    std::size_t count = 0;
    for (; count < batch.size() && next != nodes.end(); ++next) {
      batch[count++] = &next->second;
      next->second->prefetchRoads();
    }
    for (std::size_t i = 0; i < count; ++i) {
      action(*batch[i]);
      steps.step();
    }
  }
}

/// Calls `action` with each road, in the order of the network's list, when its Nodes and its
/// centre line are at hand. Each is a step.
template <class Action>
void forEachRoad(velora::roadnetwork::RoadNetworkImpl const& network, support::Steps& steps,
                 Action const& action) {
  auto const& roads = network.getRoads();
  for (std::size_t i = 0; i < roads.size(); ++i) {
    if (i + walkAhead < roads.size()) {
      roads[i + walkAhead]->prefetchNodes();
      roads[i + walkAhead]->prefetchCenters();
    }
    action(roads[i]);
    steps.step();
  }
}
