// The key "maxspeed" (https://wiki.openstreetmap.org/wiki/Key:maxspeed).
#pragma once

#include <optional>

#include "osm/records.hpp"

/// The speed limit in km/h for who travels the way in one of its directions: of "maxspeed:forward"
/// or "maxspeed:backward", or else of "maxspeed". A number above 0 without a unit, in km/h, mph or
/// knots; of several with ";" between them the lowest. None for all else, such as "none" or "walk",
/// and where one of several is such.
std::optional<double> speedLimit(OpenStreetMap::Tags const& tags, bool isForward);
