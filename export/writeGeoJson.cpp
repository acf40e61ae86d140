#include "export/writeGeoJson.hpp"

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "export/JsonWriter.hpp"
#include "export/NetworkRows.hpp"
#include "export/RestrictionRows.hpp"
#include "export/attribution.hpp"
#include "export/tagColumns.hpp"
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
      : importer_(importer),
        tagColumns_(tagColumns(importer.options.tags)),
        json_(file),
        walk_(importer.roadNetwork, progress) {}

  void collection() {
    json_.beginObject();
    json_.member("type").text("FeatureCollection");
    json_.member("attribution").text(attribution);
    json_.member("license").text(license);
    json_.member("licenseUrl").text(licenseUrl);
    json_.member("coordinateReferenceSystem").text("WGS 84 (EPSG:4326), longitude before latitude");
    json_.memberLine("features").beginList();
    forEachRow([&](auto const& row) {
      json_.itemLine();
      feature(row);
    });
    json_.endList();
    json_.endObject();
    json_.endLine();
  }

  void lines() {
    forEachRow([&](auto const& row) {
      feature(row);
      json_.endLine();
    });
  }

 private:
  template <class Action>
  void forEachRow(Action const& action) {
    walk_.forEachNode([&](Node const& node) { action(nodeRow(node)); });
    RoadRows const rows(importer_);
    walk_.forEachRoad([&](Road const& road) { action(rows(road)); });
    forEachRestriction(importer_, action);
  }

  void feature(NodeRow const& node) {
    begin("node/", node.id, "Point");
    position({node.longitude, node.latitude, node.elevation}, std::isfinite(node.elevation));
    json_.endObject();
    json_.member("properties").beginObject();
    json_.member("kind").text("node");
    json_.member("node_id").integer(node.id);
    json_.endObject();
    json_.endObject();
  }

  void feature(RoadRow const& road) {
    std::vector<Line> const lines = linesOf(road);
    begin("road/", road.id, lines.size() == 1 ? "LineString" : "MultiLineString");
    auto const writeLine = [&](Line const& line) {
      json_.list(line, [&](Position const& place) { position(place, road.hasElevations); });
    };
    lines.size() == 1 ? writeLine(lines.front()) : json_.list(lines, writeLine);
    json_.endObject();
    json_.member("properties").beginObject();
    json_.member("kind").text("road");
    json_.member("road_id").integer(road.id);
    json_.member("name");
    road.name.empty() ? json_.null() : json_.text(road.name);
    json_.member("highway").text(road.highway);
    for (std::size_t i = 0; i < road.tags.size(); ++i) {
      json_.member(tagColumns_[i]);
      road.tags[i].empty() ? json_.null() : json_.text(road.tags[i]);
    }
    json_.member("direction").integer(static_cast<int>(road.direction));
    json_.member("start_node").integer(road.startNode);
    json_.member("end_node").integer(road.endNode);
    json_.member("length").number(road.length);
    json_.member("osm_way_ids").integers(road.wayIds);
    json_.endObject();
    json_.endObject();
  }

  void feature(RestrictionRow const& row) {
    begin("restriction/", ++restrictions_, "Point");
    position({row.longitude, row.latitude, row.elevation}, std::isfinite(row.elevation));
    json_.endObject();
    json_.member("properties").beginObject();
    json_.member("kind").text("restriction");
    writeMembers(json_, row);
    json_.endObject();
    json_.endObject();
  }

  // Up to the coordinates. The id has its kind in it, to be the only one of the file.
  template <class Id>
  void begin(char const* kind, Id id, char const* geometry) {
    json_.beginObject();
    json_.member("type").text("Feature");
    json_.member("id").text(kind + std::string(NumberText(id)));
    json_.member("geometry").beginObject();
    json_.member("type").text(geometry);
    json_.member("coordinates");
  }

  void position(Position const& place, bool hasElevation) {
    json_.beginList();
    json_.item().number(place.longitude);
    json_.item().number(place.latitude);
    if (hasElevation) json_.item().number(place.elevation);
    json_.endList();
  }

  RoadNetworkImporter const& importer_;
  std::vector<std::string> tagColumns_;
  JsonWriter json_;
  NetworkWalk walk_;
  std::size_t restrictions_ = 0;
};

}  // namespace

void writeGeoJson(RoadNetworkImporter const& importer, BufferedFile& file,
                  Progress const& progress) {
  GeoJsonWriter(importer, file, progress).collection();
}

void writeGeoJsonLines(RoadNetworkImporter const& importer, BufferedFile& file,
                       Progress const& progress) {
  GeoJsonWriter(importer, file, progress).lines();
}
