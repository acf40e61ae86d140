// The first stage: which ways become roads.
#pragma once

#include <vector>

#include "osm/Reader.hpp"

/// The ways whose "highway" value is a road (https://wiki.openstreetmap.org/wiki/Key:highway), with
/// at least two node references, all of them in the file; by ascending id. A way that the edge of
/// an extract cuts off is left out whole. Fills the reader's tables.
std::vector<OpenStreetMap::Way const*> selectHighwayWays(OpenStreetMap::Reader& reader);

/// Whether the value of "highway" is that of a road; false without the tag.
bool isRoad(OpenStreetMap::Tags const& tags);
