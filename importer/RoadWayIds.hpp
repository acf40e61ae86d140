// Which ways each road was made of.
#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "osm/records.hpp"
#include "support/ModelId.hpp"

/// A multimap from road ids, which count from 1, to way ids. The ways of a road are a chain through
/// one list, so joining two roads joins two chains, however long.
class RoadWayIds {
 public:
  using RoadId = support::ModelId;
  using WayId = OpenStreetMap::Id;

  void clear() noexcept {
    entries_.clear();
    chains_.clear();
  }
  void reserve(std::size_t count) {
    entries_.reserve(count);
    chains_.reserve(count + 1);
  }
  /// How many pairs there are.
  std::size_t size() const noexcept { return entries_.size(); }
  /// The highest road id that was ever used.
  RoadId maxRoadId() const noexcept { return chains_.empty() ? 0 : chains_.size() - 1; }

  /// Adds a way behind the others of the road.
  void emplace(RoadId road, WayId way) {
    if (road >= chains_.size()) chains_.resize(road + 1);
    entries_.push_back({way, end});
    append(chains_[road], {entries_.size() - 1, entries_.size() - 1});
  }

  /// Moves all ways of `from`, which may be none, behind those of `to`.
  void move(RoadId from, RoadId to) {
    if (from >= chains_.size() || chains_[from].first == end) return;
    if (to >= chains_.size()) chains_.resize(to + 1);
    append(chains_[to], std::exchange(chains_[from], Chain()));
  }

  /// The first way of the road, if it has any.
  std::optional<WayId> first(RoadId road) const {
    if (road >= chains_.size() || chains_[road].first == end) return std::nullopt;
    return entries_[chains_[road].first].way;
  }

  /// Calls `action` with each way of the road, in order.
  template <class Action>
  void forEach(RoadId road, Action const& action) const {
    if (road >= chains_.size()) return;
    for (std::size_t i = chains_[road].first; i != end; i = entries_[i].next) {
      action(entries_[i].way);
    }
  }

 private:
  static constexpr std::size_t end = std::numeric_limits<std::size_t>::max();

  struct Entry {
    WayId way;
    std::size_t next;
  };
  struct Chain {
    std::size_t first = end;
    std::size_t last = end;
  };

  void append(Chain& chain, Chain const& tail) {
    if (tail.first == end) return;
    (chain.first == end ? chain.first : entries_[chain.last].next) = tail.first;
    chain.last = tail.last;
  }

  std::vector<Entry> entries_;
  std::vector<Chain> chains_;
};
