// Which roads of the whole network belong together because they may be joined.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "parts/WayBatch.hpp"

/// The ways of a part, cut into roads, which count from 0 here.
struct CutWays {
  std::vector<std::uint32_t> roadEnds;  ///< of each way: how many roads there are up to its last
  std::size_t negative = 0;             ///< how many of the roads are of ways with negative ids
  /// Of each road: the first of those of the part that it continues, from road to road.
  std::vector<std::uint32_t> roots;
  /// Where a road of another part continues one of this: the node and the root.
  std::vector<OpenStreetMap::Id> openNodes;
  std::vector<std::uint32_t> openRoads;
};

/// `batch` is by ascending id, and the places of its nodes are known.
CutWays cutWays(WayBatch const& batch);

/// Of nodes at which two roads meet, each of which is there twice, and of the ids of these roads:
/// of each the smallest id among all that it continues, from road to road.
std::vector<std::int64_t> joinChains(std::span<OpenStreetMap::Id const> nodes,
                                     std::span<std::int64_t const> roads);

/// The ways that these roads are pieces of, with everything that makes roads of them. `roads`
/// ascend and count from 0, `ids` are those in the whole network.
WayBatch waysOfRoads(WayBatch const& batch, std::span<std::uint32_t const> roadEnds,
                     std::span<std::int64_t const> roads, std::span<std::int64_t const> ids);
