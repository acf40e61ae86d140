// The key "name" (https://wiki.openstreetmap.org/wiki/Key:name).
#pragma once

#include <string>

#include "osm/records.hpp"

/// The value as it stands, or the way's id in decimal where there is no such tag.
std::u16string wayName(OpenStreetMap::Id id, OpenStreetMap::Tags const& tags);
