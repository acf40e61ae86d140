#include "export/writeGraphMl.hpp"

#include <cmath>
#include <string>
#include <vector>

#include "export/JsonWriter.hpp"
#include "export/NetworkRows.hpp"
#include "export/NumberText.hpp"
#include "export/RestrictionRows.hpp"
#include "export/attribution.hpp"
#include "export/tagColumns.hpp"
#include "importer/RoadNetworkImporter.hpp"

using velora::roadnetwork::DirectionOfTravel;
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
    {"restrictions", "graph", "string"},
    {"x", "node", "double"},
    {"y", "node", "double"},
    {"elevation", "node", "double"},
    {"street_count", "node", "int"},
    {"road_id", "edge", "long"},
    {"osmid", "edge", "string"},
    {"name", "edge", "string"},
    {"highway", "edge", "string"},
    {"oneway", "edge", "boolean"},
    {"reversed", "edge", "boolean"},
    {"length", "edge", "double"},
    {"geometry", "edge", "string"},
};
// What readers of graphs call the edges themselves and their ends.
constexpr std::string_view edgeNames[] = {"key", "source", "target", "u", "v"};

std::vector<std::string_view> takenNames() {
  std::vector<std::string_view> names(std::begin(edgeNames), std::end(edgeNames));
  for (Key const& key : keys) names.emplace_back(key.name);
  return names;
}

// Python's.
std::string_view text(bool value) {
  return value ? "True" : "False";
}

// One, or a list as Python writes it.
std::string wayIdText(std::vector<OpenStreetMap::Id> const& ids) {
  std::string list;
  for (OpenStreetMap::Id const id : ids) {
    list += list.empty() ? "" : ", ";
    list += NumberText(id);
  }
  return ids.size() == 1 ? list : '[' + list + ']';
}

// Whether it runs against its ways, where travel is in both directions of them.
bool isReversed(RoadRow const& road, DirectedEdge const& edge) {
  return road.direction == DirectionOfTravel::both &&
         edge.isBackward != road.pieces.front().isReversed;
}

// As the content of an element or the value of an attribute (XML 1.0, sections 2.2 and 2.4).
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
    } else if (c == '"') {
      text += "&quot;";
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
      : importer_(importer), file_(file) {
    for (std::string const& name : tagColumns(importer.options.tags, takenNames())) {
      std::string const id = "tag" + std::to_string(tags_.size());
      tags_.push_back({id, escaped(name)});
    }
  }

  void write() {
    file_.write(
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<graphml xmlns=\"http://graphml.graphdrawing.org/xmlns\">\n");
    for (Key const& key : keys) declare(key.name, key.element, key.name, key.type);
    for (Tag const& tag : tags_) declare(tag.id, "edge", tag.name, "string");
    file_.write("<graph edgedefault=\"directed\">\n");
    data("attribution", attribution);
    data("license", license);
    data("crs", coordinateReferenceSystem);
    writeRestrictions();
    NetworkWalk walk(importer_);
    walk.forEachNode([&](Node const& node) {
      writeNode(nodeRow(node), node->getIncomingRoads().size() + node->getOutgoingRoads().size());
    });
    RoadRows const rows(importer_);
    walk.forEachRoad([&](Road const& road) {
      RoadRow const row = rows(road);
      for (DirectedEdge const& edge : directedEdges(row)) writeEdge(row, edge);
    });
    file_.write("</graph>\n</graphml>\n");
  }

 private:
  struct Tag {
    std::string id;
    std::string name;
  };

  void declare(std::string const& id, char const* element, std::string const& name,
               char const* type) {
    file_.write("<key id=\"" + id + "\" for=\"" + element + "\" attr.name=\"" + name +
                "\" attr.type=\"" + type + "\"/>\n");
  }

  // As the content of an element that is written bit by bit.
  struct Content {
    BufferedFile& file;
    void write(std::string_view utf8) { file.write(escaped(utf8)); }
  };

  void writeRestrictions() {
    Content content{file_};
    JsonText json(content);
    file_.write("<data key=\"restrictions\">");
    json.beginList();
    forEachRestriction(importer_, [&](RestrictionRow const& row) {
      json.itemLine().beginObject();
      writeMembers(json, row);
      json.endObject();
    });
    json.endList();
    file_.write("</data>\n");
  }

  void writeNode(NodeRow const& node, std::size_t streets) {
    file_.write("<node id=\"");
    file_.write(NumberText(node.id));
    file_.write("\">\n");
    data("x", NumberText(node.longitude));
    data("y", NumberText(node.latitude));
    if (std::isfinite(node.elevation)) data("elevation", NumberText(node.elevation));
    data("street_count", NumberText(streets));
    file_.write("</node>\n");
  }

  void writeEdge(RoadRow const& road, DirectedEdge const& edge) {
    file_.write("<edge source=\"");
    file_.write(NumberText(edge.from));
    file_.write("\" target=\"");
    file_.write(NumberText(edge.to));
    file_.write("\">\n");
    data("road_id", NumberText(road.id));
    data("osmid", wayIdText(road.wayIds));
    if (!road.name.empty()) data("name", escaped(road.name));
    data("highway", escaped(road.highway));
    data("oneway", text(road.direction != DirectionOfTravel::both));
    data("reversed", text(isReversed(road, edge)));
    data("length", NumberText(road.length));
    data("geometry", edge.geometry);
    for (std::size_t i = 0; i < road.tags.size(); ++i) {
      if (!road.tags[i].empty()) data(tags_[i].id, escaped(road.tags[i]));
    }
    file_.write("</edge>\n");
  }

  void data(std::string_view key, std::string_view value) {
    file_.write("<data key=\"");
    file_.write(key);
    file_.write("\">");
    file_.write(value);
    file_.write("</data>\n");
  }

  RoadNetworkImporter const& importer_;
  BufferedFile& file_;
  std::vector<Tag> tags_;
};

}  // namespace

void writeGraphMl(RoadNetworkImporter const& importer, BufferedFile& file) {
  GraphMlWriter(importer, file).write();
}
