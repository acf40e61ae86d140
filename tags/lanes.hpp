// The key "lanes" (https://wiki.openstreetmap.org/wiki/Key:lanes).
#pragma once

#include <optional>

#include "osm/records.hpp"

/// How many lanes lead into one of a way's directions, at least 1. Of a one-way road all, of any
/// other "lanes:forward" or "lanes:backward", or what the other direction leaves of "lanes", or
/// half of "lanes": rounded down, as a lane in the middle is mostly for turning or overtaking, and
/// none in either direction alone. None where the tags do not say, or not in whole numbers.
std::optional<int> laneCount(OpenStreetMap::Tags const& tags, bool isOneway, bool isForward);
