// Where one gets by directed edges.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "report/RoadGraph.hpp"

struct OneWayEdge {
  RoadGraph::Number from;
  RoadGraph::Number to;
};

/// Of each vertex, numbered from 0 on, the number of its strongly connected component; these are
/// below `count`, too. Linear, and no deeper than the stack allows.
std::vector<RoadGraph::Number> strongComponents(std::size_t count,
                                                std::span<OneWayEdge const> edges);

/// Which vertices a path leads to from the first.
std::vector<bool> reachableFrom(RoadGraph::Number first, std::size_t count,
                                std::span<OneWayEdge const> edges);
