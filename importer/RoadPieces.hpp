// What each road was made of, from its start to its end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "importer/RoadWayIds.hpp"
#include "model/roadnetwork/Road.hpp"
#include "osm/records.hpp"
#include "support/IdMap.hpp"

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
  void add(RoadWayIds::RoadId road, std::vector<RoadPiece> const& pieces) {
    places_[road] = {pieces_.size(), pieces.size()};
    pieces_.insert(pieces_.end(), pieces.begin(), pieces.end());
  }
  /// None of a road that was not joined.
  std::span<RoadPiece const> of(RoadWayIds::RoadId road) const {
    auto const found = places_.find(road);
    if (found == places_.end()) return {};
    return std::span(pieces_).subspan(found->second.first, found->second.second);
  }

 private:
  std::vector<RoadPiece> pieces_;
  support::ModelIdMap<std::pair<std::size_t, std::size_t>> places_;
};

/// Calls `action` with each piece along the road, of which there is at least one. `importer` is the
/// one that made the road.
template <class Importer, class Action>
void forEachPiece(velora::roadnetwork::RoadImpl const& road, Importer const& importer,
                  Action const& action) {
  auto const pieces = importer.roadPieces.of(road.getID());
  for (RoadPiece const& piece : pieces) action(piece);
  if (!pieces.empty()) return;
  auto const& ways = importer.reader.ways;
  action(RoadPiece{&ways.at(*importer.roadWayIds.first(road.getID())),
                   road.getCentersX().values().size(), false});
}
