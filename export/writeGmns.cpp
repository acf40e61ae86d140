#include "export/writeGmns.hpp"

#include <cmath>
#include <cstdint>
#include <string>

#include "export/BufferedFile.hpp"
#include "export/NetworkRows.hpp"
#include "export/NumberText.hpp"
#include "export/attribution.hpp"
#include "importer/RoadNetworkImporter.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

// In quotes where it has to be.
std::string field(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) return std::string(text);
  std::string quoted = "\"";
  for (char const c : text) {
    if (c == '"') quoted += c;
    quoted += c;
  }
  return quoted += '"';
}

std::string field(double value) {
  return std::isfinite(value) ? std::string(NumberText(value)) : std::string();
}

std::string field(std::int64_t value) {
  return std::string(NumberText(value));
}

template <class... Fields>
void line(BufferedFile& file, Fields const&... fields) {
  char const* separator = "";
  ((file.write(separator), file.write(field(fields)), separator = ","), ...);
  file.write("\n");
}

}  // namespace

void writeGmns(RoadNetworkImporter const& importer, OutputFolder const& folder,
               Progress const& progress) {
  NetworkWalk walk(importer.roadNetwork, progress);

  BufferedFile config = folder.make(gmnsConfig);
  line(config, "dataset_name", "short_length", "long_length", "speed", "crs",
       "geometry_field_format", "id_type", "attribution", "license");
  line(config, "road network", "m", "m", "kph", coordinateReferenceSystem, "WKT", "integer",
       attribution, license);
  config.close();

  BufferedFile nodes = folder.make(gmnsNodes);
  line(nodes, "node_id", "x_coord", "y_coord", "z_coord");
  walk.forEachNode([&](Node const& node) {
    NodeRow const row = nodeRow(node);
    line(nodes, row.id, row.longitude, row.latitude, row.elevation);
  });
  nodes.close();

  BufferedFile links = folder.make(gmnsLinks);
  line(links, "link_id", "name", "from_node_id", "to_node_id", "directed", "dir_flag", "length",
       "facility_type", "road_id", "osm_way_ids", "geometry");
  std::int64_t linkId = 0;
  RoadRows const rows(importer);
  walk.forEachRoad([&](Road const& road) {
    RoadRow const row = rows(road);
    auto const roadId = static_cast<std::int64_t>(row.id);
    std::string const wayIds = row.wayIdText();
    for (DirectedEdge const& edge : directedEdges(row)) {
      line(links, ++linkId, row.name, edge.from, edge.to, "true", std::int64_t{1}, row.length,
           row.highway, roadId, wayIds, edge.geometry);
    }
  });
  links.close();
}
