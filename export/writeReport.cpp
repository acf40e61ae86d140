#include "export/writeReport.hpp"

#include <utility>

#include "export/JsonWriter.hpp"
#include "export/NetworkRows.hpp"
#include "export/NetworkWalk.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::Way;
using velora::roadnetwork::Road;

namespace {

class ReportWriter {
 public:
  ReportWriter(RoadNetworkImporter const& importer, BufferedFile& output)
      : importer_(importer), json_(output) {}

  void write(ImportReport const& report) {
    json_.first("highwayWays");
    json_.integer(report.highwayWays);
    json_.next("imported");
    json_.integer(report.importedWays);
    json_.raw(",\n \"notImported\": {");
    ways("notARoad", report.notARoad, "highway");
    list("missingNodes", report.missingNodes, [&](auto const& entry) {
      way(*entry.way);
      json_.next("missing");
      json_.integer(entry.count);
      json_.next("first");
      json_.integers(entry.first);
      place(*entry.way);
    });
    ways("fewerThanTwoNodes", report.fewerThanTwoNodes, "highway");
    json_.raw("},\n \"toCheck\": {");
    separator_ = "\n  ";
    ways("impliedOneway", report.impliedOneway, "highway");
    ways("unknownOneway", report.unknownOneway, "oneway");
    joins("droppedDirections", report.droppedDirections, "oneway");
    joins("differentNames", report.differentNames, "name");
    list("sharedNodes", report.sharedNodes, [&](auto const& shared) {
      node(shared.node);
      pair(*shared.one, *shared.other, "layer");
    });
    ways("levelBridges", report.levelBridges, "highway");
    ways("oddLayers", report.oddLayers, "layer");
    json_.raw("},\n \"roads\": [");
    char const* separator = "\n  ";
    NetworkWalk(importer_.roadNetwork, {}).forEachRoad([&](Road const& road) {
      json_.raw(std::exchange(separator, ",\n  "));
      json_.first("road");
      json_.reference(road);
      json_.next("ways");
      json_.integers(wayIdsOf(road, importer_));
      json_.raw("}");
    });
    json_.raw("]}\n");
  }

 private:
  template <class Entries, class WriteEntry>
  void list(char const* name, Entries const& entries, WriteEntry const& writeEntry) {
    json_.raw(separator_);
    json_.raw("\"");
    json_.raw(name);
    json_.raw("\": [");
    char const* separator = "\n   ";
    for (auto const& entry : entries) {
      json_.raw(separator);
      writeEntry(entry);
      json_.raw("}");
      separator = ",\n   ";
    }
    json_.raw("]");
    separator_ = ",\n  ";
  }

  void ways(char const* name, std::vector<Way const*> const& entries, char const* key) {
    list(name, entries, [&](Way const* entry) {
      way(*entry);
      tag(key, *entry);
      place(*entry);
    });
  }

  // The first of the way's nodes that the file has.
  void place(Way const& way) {
    for (Id const id : way.nodeReferences) {
      if (auto const* const first = importer_.reader.wayNodes.find(id)) return at(*first);
    }
  }

  void joins(char const* name, std::vector<ImportReport::Join> const& entries, char const* key) {
    list(name, entries, [&](ImportReport::Join const& join) {
      node(join.node);
      json_.next("road");
      json_.integer(join.road);
      pair(*join.one, *join.other, key);
    });
  }

  void pair(Way const& one, Way const& other, char const* key) {
    json_.next("ways");
    json_.raw("[");
    way(one);
    tag(key, one);
    json_.raw("}, ");
    way(other);
    tag(key, other);
    json_.raw("}]");
  }

  void node(Id id) {
    json_.first("node");
    json_.integer(id);
    at(*importer_.reader.wayNodes.find(id));
  }

  void at(OpenStreetMap::WayNodes::Position const& position) {
    json_.next("latitude");
    json_.number(position.latitude);
    json_.next("longitude");
    json_.number(position.longitude);
  }

  void way(Way const& way) {
    json_.first("way");
    json_.integer(way.id);
  }

  // The value, or null.
  void tag(char const* key, Way const& way) {
    json_.next(key);
    auto const found = way.tags.find(support::to_ustring(key));
    found == way.tags.end() ? json_.raw("null") : json_.text(found->second);
  }

  RoadNetworkImporter const& importer_;
  JsonWriter json_;
  char const* separator_ = "\n  ";
};

}  // namespace

void writeReport(ImportReport const& report, RoadNetworkImporter const& importer,
                 BufferedFile& output) {
  ReportWriter(importer, output).write(report);
}
