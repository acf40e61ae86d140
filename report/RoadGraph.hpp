// The network as a graph of numbers.
#pragma once

#include <cstdint>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"

/// Points into the network, which must outlive it.
struct RoadGraph {
  using Number = std::uint32_t;
  struct Ends {
    Number start;
    Number end;
  };

  explicit RoadGraph(RoadNetworkImporter const& importer);

  std::vector<velora::roadnetwork::Node const*> nodes;  ///< by ascending id
  std::vector<Ends> roads;  ///< in the order of the network's list: the numbers of their Nodes
  /// Of each Node, one that stands for all which are connected with it, whatever the directions.
  std::vector<Number> parts;
  Number largestPart = 0;  ///< of the most Nodes; of equal ones, that with the lowest id in it
};

/// Joins numbers to sets.
class DisjointSets {
 public:
  using Number = RoadGraph::Number;

  explicit DisjointSets(std::size_t count);
  /// The lowest of the set.
  Number find(Number member) noexcept;
  void join(Number one, Number other) noexcept;

 private:
  std::vector<Number> parents_;
};
