// The first stage: which ways become roads.
#pragma once

#include <vector>

#include "osm/Reader.hpp"

/// The ways that are roads by their tags, with at least two node references, all of them in the
/// file; by ascending id. A way that the edge of an extract cuts off is left out whole. Fills the
/// reader's tables; the reader must keep what roads need (tags/keys.hpp) and no more.
std::vector<OpenStreetMap::Way const*> selectHighwayWays(OpenStreetMap::Reader& reader);
