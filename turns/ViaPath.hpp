// What lies between the way that a turn comes from and the way that it goes to.
#pragma once

#include <variant>
#include <vector>

#include "osm/records.hpp"
#include "turns/TurnRestriction.hpp"
#include "turns/WayEnds.hpp"

/// More ways than any real restriction goes over.
constexpr std::size_t mostViaWays = 16;

/// A single node, or ways, each from one of its ends to the other.
struct ViaPath {
  struct Step {
    OpenStreetMap::Way const* way;
    bool isAlong;  ///< or against the direction in which the way was drawn
  };
  OpenStreetMap::Id start;
  std::vector<Step> steps;
};

/// All ways to string the via ways, at most `mostViaWays`, together between the other two; or why
/// there is none. A way meets another at its ends, or at a Node.
std::variant<std::vector<ViaPath>, UnmappedReason> findViaPaths(
    OpenStreetMap::Way const& from, std::vector<OpenStreetMap::Way const*> const& via,
    OpenStreetMap::Way const& to, WayEnds const& ends);
