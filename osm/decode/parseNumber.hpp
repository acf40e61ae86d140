// Numbers as OSM files write them.
#pragma once

#include <string_view>

#include "osm/records.hpp"

namespace OpenStreetMap {

/// A decimal integer that fits 64 bits, with nothing around it. Throws std::runtime_error that says
/// what is wrong with the attribute `name`.
Id parseId(char const* name, std::string_view text);

/// A finite decimal number of degrees, -limit to limit, with nothing around it, rounded to the
/// nearest double whatever the locale; so it may be 0 though not all of its digits are. Throws
/// std::runtime_error likewise.
double parseDegrees(char const* name, std::string_view text, double limit);

}  // namespace OpenStreetMap
