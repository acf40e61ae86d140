// What the tags of a restriction say (https://wiki.openstreetmap.org/wiki/Relation:restriction).
#pragma once

#include <vector>

#include "osm/records.hpp"
#include "turns/TurnRestriction.hpp"

/// Many more than any real restriction has; further ones are left out.
constexpr std::size_t mostRules = 16;

struct RestrictionRules {
  std::vector<RestrictionRule> known;  ///< in the order of the tags; one more than `mostRules`
                                       ///< at most
  /// Whether there is a statement without a kind that is known, or none at all.
  bool hasUnknown = false;
};

/// From "restriction", "restriction:hgv" and the like, both also with ":conditional"; of the old
/// ways of tagging, "type=restriction:hgv" and hours and days in tags of their own.
RestrictionRules restrictionRules(OpenStreetMap::Tags const& tags);
