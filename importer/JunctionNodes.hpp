// Which nodes are junctions.
#pragma once

#include <cstddef>
#include <vector>

#include "osm/WayNodes.hpp"

/// A set of nodes, by their numbers among the nodes under ways.
class JunctionNodes {
 public:
  using Number = OpenStreetMap::WayNodes::Number;

  JunctionNodes() = default;
  /// Empty, of nodes whose numbers are below `count`.
  explicit JunctionNodes(std::size_t count) : isJunction_(count) {}

  void insert(Number node) {
    if (!isJunction_[node]) ++size_;
    isJunction_[node] = true;
  }
  bool contains(Number node) const { return isJunction_[node]; }
  std::size_t size() const noexcept { return size_; }

 private:
  std::vector<bool> isJunction_;
  std::size_t size_ = 0;
};
