#include "export/geoJson.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "export/attribution.hpp"

namespace {

constexpr double antimeridian = 180.0;

bool isSamePlace(GeoPosition const& one, GeoPosition const& other) {
  return one.longitude == other.longitude && one.latitude == other.latitude;
}

bool crosses(GeoPosition const& from, GeoPosition const& to) {
  return std::abs(to.longitude - from.longitude) > antimeridian;
}

// Adds the place where the shorter way between the two crosses the antimeridian: to the line that
// ends there, and to a new one that begins on the other side.
void cut(GeoPosition const& from, GeoPosition const& to, std::vector<GeoLine>& lines) {
  double const side = std::copysign(antimeridian, from.longitude);
  double const before = antimeridian - std::abs(from.longitude);
  double const after = antimeridian - std::abs(to.longitude);
  double const share = before == 0.0 ? 0.0 : before / (before + after);
  GeoPosition place{side, std::lerp(from.latitude, to.latitude, share),
                    std::lerp(from.elevation, to.elevation, share)};
  if (!isSamePlace(place, from)) lines.back().push_back(place);
  place.longitude = -side;
  lines.emplace_back();
  if (!isSamePlace(place, to)) lines.back().push_back(place);
}

void begin(JsonWriter& json, char const* type) {
  json.beginObject();
  json.member("type").text(type);
  json.member("coordinates");
}

void writeCoordinates(JsonWriter& json, GeoPosition const& place, bool hasElevation) {
  json.beginList();
  json.item().number(place.longitude);
  json.item().number(place.latitude);
  if (hasElevation) json.item().number(place.elevation);
  json.endList();
}

}  // namespace

std::vector<GeoLine> cutAtAntimeridian(GeoLine const& line) {
  std::vector<GeoLine> lines(1);
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (i > 0 && crosses(line[i - 1], line[i])) cut(line[i - 1], line[i], lines);
    lines.back().push_back(line[i]);
  }
  // A road that only touches it leaves a single point on the other side.
  auto const isPoint = [](GeoLine const& part) { return part.size() < 2; };
  if (std::all_of(lines.begin(), lines.end(), isPoint)) {  // from one name of a place to the other
    GeoLine const both{lines.front().front(), lines.back().front()};
    return {both};
  }
  std::erase_if(lines, isPoint);
  return lines;
}

void beginFeatureCollection(JsonWriter& json) {
  json.beginObject();
  json.member("type").text("FeatureCollection");
  json.member("attribution").text(attribution);
  json.member("license").text(license);
  json.member("licenseUrl").text(licenseUrl);
  json.member("coordinateReferenceSystem").text("WGS 84 (EPSG:4326), longitude before latitude");
  json.memberLine("features").beginList();
}

void writePoint(JsonWriter& json, GeoPosition const& point, bool hasElevation) {
  begin(json, "Point");
  writeCoordinates(json, point, hasElevation);
  json.endObject();
}

void writePoints(JsonWriter& json, std::span<GeoPosition const> points) {
  if (points.size() == 1) return writePoint(json, points.front(), false);
  begin(json, "MultiPoint");
  json.list(points, [&](GeoPosition const& point) { writeCoordinates(json, point, false); });
  json.endObject();
}

void writeLines(JsonWriter& json, std::span<GeoLine const> lines, bool hasElevation) {
  auto const writeLine = [&](GeoLine const& line) {
    json.list(line, [&](GeoPosition const& place) { writeCoordinates(json, place, hasElevation); });
  };
  begin(json, lines.size() == 1 ? "LineString" : "MultiLineString");
  lines.size() == 1 ? writeLine(lines.front()) : json.list(lines, writeLine);
  json.endObject();
}
