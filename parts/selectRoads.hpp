// Which ways of a part become roads, and what they make of their nodes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "importer/ImportOptions.hpp"
#include "parts/WayBatch.hpp"

struct SelectedRoads {
  WayBatch roads;                  ///< by ascending id
  std::vector<std::uint8_t> uses;  ///< of each of its nodes: NodeUse's bits
  std::size_t missingNodes = 0;    ///< how many ways of the batch lack nodes
};

/// Of a batch whose nodes' positions are known.
SelectedRoads selectRoads(WayBatch const& batch);

/// Adds up how several parts use nodes.
class NodeUses {
 public:
  using Id = OpenStreetMap::Id;

  /// `nodes` are in file order and must outlive this.
  explicit NodeUses(std::span<Id const> nodes) : nodes_(nodes), uses_(nodes.size()) {}

  /// `uses` are NodeUse's bits of some of the nodes.
  void add(std::span<Id const> nodes, std::span<std::uint8_t const> uses);
  /// What each node is: bits of NodePlace. At those of `fixed` no roads are joined.
  std::vector<std::uint8_t> places(std::span<Id const> fixed) const;

 private:
  std::span<Id const> nodes_;
  std::vector<std::uint8_t> uses_;
};

/// The rows of `ids` among `sorted`, which are in file order; -1 for what is not there.
std::vector<std::int64_t> findRows(std::span<OpenStreetMap::Id const> sorted,
                                   std::span<OpenStreetMap::Id const> ids);
