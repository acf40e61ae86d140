// The key "highway" (https://wiki.openstreetmap.org/wiki/Key:highway): which ways are roads.
#pragma once

#include "osm/records.hpp"

/// Whether the value is one of the sixteen that make a way a road: motorway, trunk, primary,
/// secondary, tertiary, the _link of each of these, unclassified, residential, living_street,
/// service, raceway and road. False without the tag.
bool isRoad(OpenStreetMap::Tags const& tags);
