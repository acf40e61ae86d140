#include "export/writeGraphMl.hpp"

#include <cmath>
#include <string>

#include "export/NetworkRows.hpp"
#include "export/NumberText.hpp"
#include "export/attribution.hpp"
#include "importer/RoadNetworkImporter.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

struct Key {
  char const* name;
  char const* element;
  char const* type;
};

constexpr Key keys[] = {
    {"attribution", "graph", "string"},
    {"license", "graph", "string"},
    {"crs", "graph", "string"},
    {"x", "node", "double"},
    {"y", "node", "double"},
    {"elevation", "node", "double"},
    {"road_id", "edge", "long"},
    {"name", "edge", "string"},
    {"highway", "edge", "string"},
    {"length", "edge", "double"},
    {"osm_way_ids", "edge", "string"},
    {"geometry", "edge", "string"},
};

// As the content of an element (XML 1.0, sections 2.2 and 2.4).
std::string escaped(std::string_view utf8) {
  constexpr std::string_view replacement = "\uFFFD";
  std::string text;
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    char const c = utf8[i];
    // U+FFFE and U+FFFF
    bool const isNoCharacter =
        utf8.substr(i, 3) == "\xEF\xBF\xBE" || utf8.substr(i, 3) == "\xEF\xBF\xBF";
    if (c == '&') {
      text += "&amp;";
    } else if (c == '<') {
      text += "&lt;";
    } else if (c == '>') {
      text += "&gt;";
    } else if (c == '\r') {
      text += "&#13;";
    } else if (isNoCharacter || (c >= 0 && c < ' ' && c != '\t' && c != '\n')) {
      text += replacement;
      if (isNoCharacter) i += 2;
    } else {
      text += c;
    }
  }
  return text;
}

class GraphMlWriter {
 public:
  GraphMlWriter(RoadNetworkImporter const& importer, BufferedFile& file)
      : importer_(importer), file_(file) {}

  void write(Progress const& progress) {
    file_.write(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<graphml xmlns=\"http://graphml.graphdrawing.org/xmlns\">\n");
    for (Key const& key : keys) {
      file_.write(std::string("<key id=\"") + key.name + "\" for=\"" + key.element +
                  "\" attr.name=\"" + key.name + "\" attr.type=\"" + key.type + "\"/>\n");
    }
    file_.write("<graph edgedefault=\"directed\">\n");
    data("attribution", attribution);
    data("license", license);
    data("crs", coordinateReferenceSystem);
    NetworkWalk walk(importer_.roadNetwork, progress);
    walk.forEachNode([&](Node const& node) { writeNode(nodeRow(node)); });
    RoadRows const rows(importer_);
    walk.forEachRoad([&](Road const& road) {
      RoadRow const row = rows(road);
      for (DirectedEdge const& edge : directedEdges(row)) writeEdge(row, edge);
    });
    file_.write("</graph>\n</graphml>\n");
  }

 private:
  void writeNode(NodeRow const& node) {
    file_.write("<node id=\"");
    file_.write(NumberText(node.id));
    file_.write("\">\n");
    data("x", NumberText(node.longitude));
    data("y", NumberText(node.latitude));
    if (std::isfinite(node.elevation)) data("elevation", NumberText(node.elevation));
    file_.write("</node>\n");
  }

  void writeEdge(RoadRow const& road, DirectedEdge const& edge) {
    file_.write("<edge id=\"e");
    file_.write(NumberText(++edges_));
    file_.write("\" source=\"");
    file_.write(NumberText(edge.from));
    file_.write("\" target=\"");
    file_.write(NumberText(edge.to));
    file_.write("\">\n");
    data("road_id", NumberText(road.id));
    if (!road.name.empty()) data("name", escaped(road.name));
    data("highway", escaped(road.highway));
    data("length", NumberText(road.length));
    data("osm_way_ids", road.wayIdText());
    data("geometry", edge.geometry);
    file_.write("</edge>\n");
  }

  void data(char const* key, std::string_view value) {
    file_.write("<data key=\"");
    file_.write(key);
    file_.write("\">");
    file_.write(value);
    file_.write("</data>\n");
  }

  RoadNetworkImporter const& importer_;
  BufferedFile& file_;
  std::size_t edges_ = 0;
};

}  // namespace

void writeGraphMl(RoadNetworkImporter const& importer, BufferedFile& file,
                  Progress const& progress) {
  GraphMlWriter(importer, file).write(progress);
}
