#include "export/writeGmns.hpp"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "export/BufferedFile.hpp"
#include "export/GmnsMovements.hpp"
#include "export/NetworkRows.hpp"
#include "export/attribution.hpp"
#include "export/csv.hpp"
#include "export/tagColumns.hpp"
#include "importer/RoadNetworkImporter.hpp"
#include "tags/access.hpp"
#include "tags/lanes.hpp"
#include "tags/maxspeed.hpp"

using csv::field;
using csv::joined;
using csv::line;
using OpenStreetMap::Tags;
using velora::roadnetwork::DirectionOfTravel;
using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

// Those that every link has.
constexpr std::string_view linkColumns[] = {
    "link_id",  "name",         "from_node_id", "to_node_id",    "directed",
    "geometry", "dir_flag",     "length",       "facility_type", "free_speed",
    "lanes",    "allowed_uses", "road_id",      "osm_way_ids"};
// What else has a meaning in GMNS, which is not that of a tag.
constexpr std::string_view otherColumns[] = {
    "parent_link_id", "geometry_id", "grade", "capacity",     "bike_facility",
    "ped_facility",   "parking",     "toll",  "jurisdiction", "row_width"};

struct Use {
  RoadUser user;
  std::string_view name;
  double persons;  // in a vehicle
  double cars;     // that take up as much of the road
  std::string_view description;
};
constexpr Use uses[] = {
    {RoadUser::car, "auto", 1.5, 1.0, "cars"},
    {RoadUser::truck, "truck", 1.0, 2.0, "heavy goods vehicles"},
    {RoadUser::bus, "bus", 20.0, 2.0, "buses"},
    {RoadUser::bicycle, "bike", 1.0, 0.2, "bicycles"},
    {RoadUser::pedestrian, "walk", 1.0, 0.0, "people on foot"},
};
constexpr char noUse[] = "none";

constexpr double highestSpeed = 200.0;

template <class Texts>
std::string list(Texts const& texts) {
  std::string text;
  for (auto const& item : texts) {
    text += ',';
    text += field(item);
  }
  return text;
}

// The lowest of what the pieces say, if all of them do. `valueOf` gets a piece's tags and whether
// the edge has the direction of its way.
template <class ValueOf>
auto lowest(RoadRow const& road, DirectedEdge const& edge, ValueOf const& valueOf) {
  auto const of = [&](RoadPiece const& piece) {
    return valueOf(piece.way->tags, piece.isReversed == edge.isBackward);
  };
  auto result = of(road.pieces.front());
  for (RoadPiece const& piece : road.pieces) result = std::min(result, of(piece));
  return result;
}

std::optional<double> freeSpeed(RoadRow const& road, DirectedEdge const& edge) {
  auto const speed = lowest(road, edge, speedLimit);
  return speed && *speed <= highestSpeed ? speed : std::nullopt;
}

std::optional<int> lanes(RoadRow const& road, DirectedEdge const& edge) {
  bool const isOneway = road.direction != DirectionOfTravel::both;
  return lowest(road, edge, [&](Tags const& tags, bool isForward) {
    return laneCount(tags, isOneway, isForward);
  });
}

std::string allowedUses(RoadRow const& road) {
  std::string names;
  for (Use const& use : uses) {
    bool const isAllowed =
        std::all_of(road.pieces.begin(), road.pieces.end(),
                    [&](RoadPiece const& piece) { return mayUse(use.user, piece.way->tags); });
    if (!isAllowed) continue;
    if (!names.empty()) names += ',';
    names += use.name;
  }
  return names.empty() ? noUse : names;
}

}  // namespace

std::vector<std::string> gmnsTags() {
  return {"lanes",
          "lanes:forward",
          "lanes:backward",
          "access",
          "vehicle",
          "foot",
          "maxspeed",
          "maxspeed:forward",
          "maxspeed:backward",
          "motor_vehicle",
          "motorcar",
          "motorroad",
          "hgv",
          "bus",
          "psv",
          "bicycle"};
}

void writeGmns(RoadNetworkImporter const& importer, OutputFolder const& folder) {
  NetworkWalk walk(importer);

  BufferedFile config = folder.make(gmnsConfig);
  line(config, "dataset_name", "short_length", "long_length", "speed", "crs",
       "geometry_field_format", "id_type", "attribution", "license");
  line(config, "road network", "m", "m", "kph", coordinateReferenceSystem, "WKT", "integer",
       attribution, license);
  config.close();

  BufferedFile useDefinitions = folder.make(gmnsUses);
  line(useDefinitions, "use", "persons_per_vehicle", "pce", "description");
  for (Use const& use : uses)
    line(useDefinitions, use.name, use.persons, use.cars, use.description);
  line(useDefinitions, noUse, 0.0, 0.0, "nobody of the general public");
  useDefinitions.close();

  BufferedFile nodes = folder.make(gmnsNodes);
  line(nodes, "node_id", "x_coord", "y_coord", "z_coord");
  walk.forEachNode([&](Node const& node) {
    NodeRow const row = nodeRow(node);
    line(nodes, row.id, row.longitude, row.latitude, row.elevation);
  });
  nodes.close();

  BufferedFile links = folder.make(gmnsLinks);
  std::vector<std::string_view> own(std::begin(linkColumns), std::end(linkColumns));
  std::string const header = list(own);
  own.insert(own.end(), std::begin(otherColumns), std::end(otherColumns));
  links.write(header.substr(1) + list(tagColumns(importer.options.tags, own)) + '\n');
  GmnsMovements movements;
  std::int64_t linkId = 0;
  RoadRows const rows(importer);
  walk.forEachRoad([&](Road const& road) {
    RoadRow const row = rows(road);
    auto const roadId = static_cast<std::int64_t>(row.id);
    movements.addLinks(row.id, linkId + 1);
    std::string const endOfLine =
        ',' + joined(allowedUses(row), roadId, row.wayIdText()) + list(row.tags) + '\n';
    for (DirectedEdge const& edge : directedEdges(row)) {
      links.write(joined(++linkId, row.name, edge.from, edge.to, "true", edge.geometry,
                         std::int64_t{1}, row.length, row.highway, freeSpeed(row, edge),
                         lanes(row, edge)));
      links.write(endOfLine);
    }
  });
  links.close();
  movements.write(importer, folder);
}
