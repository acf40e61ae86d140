// What each road was made of, from its start to its end.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "importer/RoadWayIds.hpp"
#include "model/roadnetwork/Road.hpp"
#include "osm/records.hpp"

/// One of the roads that a road was joined of: a part of one OSM way.
struct RoadPiece {
  OpenStreetMap::Way const* way;
  /// How many points of the road's centre line it takes up; the last is the next piece's first.
  std::size_t points;
  bool isReversed;  ///< whether the way runs from the road's end to its start
};

/// The pieces of the roads that were joined, along each.
class RoadPieces {
 public:
  struct Entry {
    RoadWayIds::WayId way;
    std::uint32_t points;
    bool isReversed;
    bool isLast;  ///< of its road
  };

  /// The first piece of a road follows.
  void begin(RoadWayIds::RoadId road) { places_.push_back({road, entries_.size()}); }
  void add(Entry const& entry) { entries_.push_back(entry); }
  /// Makes `first` possible, when all are in.
  void sort() {
    std::sort(places_.begin(), places_.end(),
              [](Place const& a, Place const& b) { return a.road < b.road; });
  }
  /// Null for a road that was not joined. The others follow.
  Entry const* first(RoadWayIds::RoadId road) const {
    auto const found = std::lower_bound(
        places_.begin(), places_.end(), road,
        [](Place const& place, RoadWayIds::RoadId wanted) { return place.road < wanted; });
    bool const isThere = found != places_.end() && found->road == road;
    return isThere ? &entries_[found->entry] : nullptr;
  }

 private:
  struct Place {
    RoadWayIds::RoadId road;
    std::size_t entry;
  };

  std::vector<Entry> entries_;
  std::vector<Place> places_;
};

/// Calls `action` with each RoadPiece along the road, of which there is at least one. `importer` is
/// the one that made the road.
template <class Importer, class Action>
void forEachPiece(velora::roadnetwork::RoadImpl const& road, Importer const& importer,
                  Action const& action) {
  auto const& ways = importer.reader.ways;
  auto const* entry = importer.roadPieces.first(road.getID());
  if (entry == nullptr) {
    action(RoadPiece{&ways.at(*importer.roadWayIds.first(road.getID())),
                     road.getCentersX().values().size(), false});
    return;
  }
  for (bool isLast = false; !isLast; ++entry) {
    isLast = entry->isLast;
    action(RoadPiece{&ways.at(entry->way), entry->points, entry->isReversed});
  }
}
