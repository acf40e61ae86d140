#include "export/writeReport.hpp"

#include <array>
#include <vector>

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
    json_.beginObject();
    json_.member("highwayWays").integer(report.highwayWays);
    json_.member("imported").integer(report.importedWays);
    json_.memberLine("notImported").beginObject();
    ways("notARoad", report.notARoad, "highway");
    list("missingNodes", report.missingNodes, [&](auto const& entry) {
      json_.member("way").integer(entry.way->id);
      json_.member("missing").integer(entry.count);
      json_.member("first").integers(entry.first);
      place(*entry.way);
    });
    ways("fewerThanTwoNodes", report.fewerThanTwoNodes, "highway");
    json_.endObject();
    json_.memberLine("toCheck").beginObject();
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
    json_.endObject();
    json_.memberLine("roads").beginList();
    NetworkWalk(importer_.roadNetwork, {}).forEachRoad([&](Road const& road) {
      json_.itemLine().beginObject();
      json_.member("road").reference(road);
      json_.member("ways").integers(wayIdsOf(road, importer_));
      json_.endObject();
    });
    json_.endList();
    json_.endObject();
    json_.endLine();
  }

 private:
  template <class Entries, class WriteMembers>
  void list(char const* name, Entries const& entries, WriteMembers const& writeMembers) {
    json_.memberLine(name).beginList();
    for (auto const& entry : entries) {
      json_.itemLine().beginObject();
      writeMembers(entry);
      json_.endObject();
    }
    json_.endList();
  }

  void ways(char const* name, std::vector<Way const*> const& entries, char const* key) {
    list(name, entries, [&](Way const* way) {
      wayWithTag(*way, key);
      place(*way);
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
      json_.member("road").integer(join.road);
      pair(*join.one, *join.other, key);
    });
  }

  void pair(Way const& one, Way const& other, char const* key) {
    json_.member("ways").list(std::array{&one, &other}, [&](Way const* way) {
      json_.beginObject();
      wayWithTag(*way, key);
      json_.endObject();
    });
  }

  void node(Id id) {
    json_.member("node").integer(id);
    at(*importer_.reader.wayNodes.find(id));
  }

  void at(OpenStreetMap::WayNodes::Position const& position) {
    json_.member("latitude").number(position.latitude);
    json_.member("longitude").number(position.longitude);
  }

  // The tag's value, or null.
  void wayWithTag(Way const& way, char const* key) {
    json_.member("way").integer(way.id);
    json_.member(key);
    auto const found = way.tags.find(support::to_ustring(key));
    found == way.tags.end() ? json_.null() : json_.text(found->second);
  }

  RoadNetworkImporter const& importer_;
  JsonWriter json_;
};

}  // namespace

void writeReport(ImportReport const& report, RoadNetworkImporter const& importer,
                 BufferedFile& output) {
  ReportWriter(importer, output).write(report);
}
