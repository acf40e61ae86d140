#include "export/writeGeoJson.hpp"

#include <cmath>
#include <string>
#include <vector>

#include "export/JsonWriter.hpp"
#include "export/NetworkRows.hpp"
#include "export/RestrictionRows.hpp"
#include "export/geoJson.hpp"
#include "export/tagColumns.hpp"
#include "importer/RoadNetworkImporter.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

std::vector<GeoLine> linesOf(RoadRow const& road) {
  GeoLine line;
  line.reserve(road.longitudes.size());
  for (std::size_t i = 0; i < road.longitudes.size(); ++i) {
    line.push_back({road.longitudes[i], road.latitudes[i], road.elevations[i]});
  }
  return cutAtAntimeridian(line);
}

class GeoJsonWriter {
 public:
  GeoJsonWriter(RoadNetworkImporter const& importer, BufferedFile& file)
      : importer_(importer),
        tagColumns_(tagColumns(importer.options.tags)),
        json_(file),
        walk_(importer) {}

  void collection() {
    beginFeatureCollection(json_);
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
    begin("node/", node.id);
    writePoint(json_, {node.longitude, node.latitude, node.elevation},
               std::isfinite(node.elevation));
    json_.member("properties").beginObject();
    json_.member("kind").text("node");
    json_.member("node_id").integer(node.id);
    json_.endObject();
    json_.endObject();
  }

  void feature(RoadRow const& road) {
    begin("road/", road.id);
    writeLines(json_, linesOf(road), road.hasElevations);
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
    begin("restriction/", ++restrictions_);
    writePoint(json_, {row.longitude, row.latitude, row.elevation}, std::isfinite(row.elevation));
    json_.member("properties").beginObject();
    json_.member("kind").text("restriction");
    writeMembers(json_, row);
    json_.endObject();
    json_.endObject();
  }

  // Up to the geometry. The id has its kind in it, to be the only one of the file.
  template <class Id>
  void begin(char const* kind, Id id) {
    json_.beginObject();
    json_.member("type").text("Feature");
    json_.member("id").text(kind + std::string(NumberText(id)));
    json_.member("geometry");
  }

  RoadNetworkImporter const& importer_;
  std::vector<std::string> tagColumns_;
  JsonWriter json_;
  NetworkWalk walk_;
  std::size_t restrictions_ = 0;
};

}  // namespace

void writeGeoJson(RoadNetworkImporter const& importer, BufferedFile& file) {
  GeoJsonWriter(importer, file).collection();
}

void writeGeoJsonLines(RoadNetworkImporter const& importer, BufferedFile& file) {
  GeoJsonWriter(importer, file).lines();
}
