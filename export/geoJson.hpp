// What GeoJSON texts have in common.
#pragma once

#include <span>
#include <vector>

#include "export/JsonWriter.hpp"

struct GeoPosition {
  double longitude;
  double latitude;
  double elevation;
};
using GeoLine = std::vector<GeoPosition>;

/// As the standard asks, no line crosses the antimeridian: the shorter way between two points is
/// cut there, and each part has the place where it is. A line of two points or more remains one.
std::vector<GeoLine> cutAtAntimeridian(GeoLine const& line);

/// Up to the features: their list begins.
void beginFeatureCollection(JsonWriter& json);

/// Geometry objects: Point; MultiPoint, or Point for a single one, without elevations; LineString,
/// or MultiLineString for more than one.
void writePoint(JsonWriter& json, GeoPosition const& point, bool hasElevation);
void writePoints(JsonWriter& json, std::span<GeoPosition const> points);
void writeLines(JsonWriter& json, std::span<GeoLine const> lines, bool hasElevation);
