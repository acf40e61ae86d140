// Which ways of a part become roads, and what they make of their nodes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "importer/ImportOptions.hpp"
#include "parts/WayBatch.hpp"

struct SelectedRoads {
  WayBatch roads;  ///< by ascending id
  /// Of each node of the batch that they were chosen from: NodeUse's bits, and whether the roads
  /// have it.
  std::vector<std::uint8_t> uses;
  std::vector<std::uint8_t> isUsed;
  std::size_t missingNodes = 0;  ///< how many ways of the batch lack nodes
};

/// Of a batch whose nodes' positions are known.
SelectedRoads selectRoads(WayBatch const& batch);

/// How one part uses nodes: the rows of those nodes in a table, and NodeUse's bits of each.
struct PartUses {
  std::span<std::int64_t const> rows;
  std::span<std::uint8_t const> uses;
};

/// What each of `count` nodes is to all parts: bits of NodePlace. At those in the rows `fixed`,
/// which are -1 for no node of the table, no roads are joined.
std::vector<std::uint8_t> findPlaces(std::size_t count, std::span<PartUses const> parts,
                                     std::span<std::int64_t const> fixed);

/// The rows of `ids` among `sorted`, which are in file order; -1 for what is not there.
std::vector<std::int64_t> findRows(std::span<OpenStreetMap::Id const> sorted,
                                   std::span<OpenStreetMap::Id const> ids);
