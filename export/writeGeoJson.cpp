#include "export/writeGeoJson.hpp"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "export/JsonWriter.hpp"
#include "export/NetworkRows.hpp"
#include "export/attribution.hpp"
#include "importer/RoadNetworkImporter.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

struct Position {
  double longitude;
  double latitude;
  double elevation;
};
using Line = std::vector<Position>;

constexpr double antimeridian = 180.0;

bool isSamePlace(Position const& one, Position const& other) {
  return one.longitude == other.longitude && one.latitude == other.latitude;
}

bool crosses(Position const& from, Position const& to) {
  return std::abs(to.longitude - from.longitude) > antimeridian;
}

// Adds the place where the shorter way between the two crosses the antimeridian: to the line that
// ends there, and to a new one that begins on the other side.
void cut(Position const& from, Position const& to, std::vector<Line>& lines) {
  double const side = std::copysign(antimeridian, from.longitude);
  double const before = antimeridian - std::abs(from.longitude);
  double const after = antimeridian - std::abs(to.longitude);
  double const share = before == 0.0 ? 0.0 : before / (before + after);
  Position place{side, std::lerp(from.latitude, to.latitude, share),
                 std::lerp(from.elevation, to.elevation, share)};
  if (!isSamePlace(place, from)) lines.back().push_back(place);
  place.longitude = -side;
  lines.emplace_back();
  if (!isSamePlace(place, to)) lines.back().push_back(place);
}

std::vector<Line> linesOf(RoadRow const& road) {
  std::vector<Line> lines(1);
  for (std::size_t i = 0; i < road.longitudes.size(); ++i) {
    Position const position{road.longitudes[i], road.latitudes[i], road.elevations[i]};
    if (i > 0) {
      Position const last{road.longitudes[i - 1], road.latitudes[i - 1], road.elevations[i - 1]};
      if (crosses(last, position)) cut(last, position, lines);
    }
    lines.back().push_back(position);
  }
  // A road that only touches it leaves a single point on the other side.
  auto const isPoint = [](Line const& line) { return line.size() < 2; };
  if (std::all_of(lines.begin(), lines.end(), isPoint)) {  // from one name of a place to the other
    Line const both{lines.front().front(), lines.back().front()};
    return {both};
  }
  std::erase_if(lines, isPoint);
  return lines;
}

class GeoJsonWriter {
 public:
  GeoJsonWriter(RoadNetworkImporter const& importer, BufferedFile& file, Progress const& progress)
      : importer_(importer), json_(file), walk_(importer.roadNetwork, progress) {}

  void features(char const* beforeFirst, char const* beforeOthers, char const* after) {
    char const* before = beforeFirst;
    auto const write = [&](auto const& row) {
      json_.raw(std::exchange(before, beforeOthers));
      feature(row);
      json_.raw(after);
    };
    walk_.forEachNode([&](Node const& node) { write(nodeRow(node)); });
    walk_.forEachRoad([&](Road const& road) { write(roadRow(road, importer_)); });
  }

  void collection() {
    json_.first("type");
    json_.text("FeatureCollection");
    member("attribution", attribution);
    member("license", license);
    member("licenseUrl", licenseUrl);
    member("coordinateReferenceSystem", "WGS 84 (EPSG:4326), longitude before latitude");
    json_.raw(",\n \"features\": [");
    features("\n  ", ",\n  ", "");
    json_.raw("]}\n");
  }

 private:
  void feature(NodeRow const& node) {
    begin("node/", node.id, "Point");
    position({node.longitude, node.latitude, node.elevation}, std::isfinite(node.elevation));
    json_.raw("}");
    json_.next("properties");
    json_.first("kind");
    json_.text("node");
    json_.next("node_id");
    json_.integer(node.id);
    json_.raw("}}");
  }

  void feature(RoadRow const& road) {
    std::vector<Line> const lines = linesOf(road);
    begin("road/", road.id, lines.size() == 1 ? "LineString" : "MultiLineString");
    auto const writeLine = [&](Line const& line) {
      json_.list(line, [&](Position const& place) { position(place, road.hasElevations); });
    };
    lines.size() == 1 ? writeLine(lines.front()) : json_.list(lines, writeLine);
    json_.raw("}");
    json_.next("properties");
    json_.first("kind");
    json_.text("road");
    json_.next("road_id");
    json_.integer(road.id);
    json_.next("name");
    road.name.empty() ? json_.raw("null") : json_.text(road.name);
    member("highway", road.highway);
    json_.next("direction");
    json_.integer(static_cast<int>(road.direction));
    json_.next("start_node");
    json_.integer(road.startNode);
    json_.next("end_node");
    json_.integer(road.endNode);
    json_.next("length");
    json_.number(road.length);
    json_.next("osm_way_ids");
    json_.integers(road.wayIds);
    json_.raw("}}");
  }

  // Up to the coordinates. The id has its kind in it, to be the only one of the file.
  template <class Id>
  void begin(char const* kind, Id id, char const* geometry) {
    json_.first("type");
    json_.text("Feature");
    json_.next("id");
    json_.text(kind + std::string(NumberText(id)));
    json_.next("geometry");
    json_.first("type");
    json_.text(geometry);
    json_.next("coordinates");
  }

  void position(Position const& place, bool hasElevation) {
    json_.raw("[");
    json_.number(place.longitude);
    json_.raw(", ");
    json_.number(place.latitude);
    if (hasElevation) {
      json_.raw(", ");
      json_.number(place.elevation);
    }
    json_.raw("]");
  }

  void member(char const* name, std::string_view value) {
    json_.next(name);
    json_.text(value);
  }

  RoadNetworkImporter const& importer_;
  JsonWriter json_;
  NetworkWalk walk_;
};

}  // namespace

void writeGeoJson(RoadNetworkImporter const& importer, BufferedFile& file,
                  Progress const& progress) {
  GeoJsonWriter(importer, file, progress).collection();
}

void writeGeoJsonLines(RoadNetworkImporter const& importer, BufferedFile& file,
                       Progress const& progress) {
  GeoJsonWriter(importer, file, progress).features("", "", "\n");
}
