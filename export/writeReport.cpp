#include "export/writeReport.hpp"

#include <cmath>
#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

#include "export/JsonWriter.hpp"
#include "export/NetworkRows.hpp"
#include "export/NetworkWalk.hpp"
#include "export/ReportRow.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::Way;
using velora::roadnetwork::Road;

namespace {

class ReportWriter {
 public:
  ReportWriter(ImportReport const& report, RoadNetworkImporter const& importer,
               BufferedFile& output)
      : report_(report),
        importer_(importer),
        steps_(importer.progress(), support::Stage::writingReport,
               report.notImported() + report.toCheck() + importer.roadNetwork->getRoads().size()),
        json_(output) {}

  void write() {
    json_.beginObject();
    json_.member("highwayWays").integer(report_.highwayWays);
    json_.member("imported").integer(report_.importedWays);
    json_.memberLine("notImported").beginObject();
    ways("notARoad", report_.notARoad, "highway");
    list("missingNodes", report_.missingNodes, [&](auto const& entry) {
      json_.member("way").integer(entry.way->id);
      json_.member("missing").integer(entry.count);
      json_.member("first").integers(entry.first);
      place(*entry.way);
    });
    ways("fewerThanTwoNodes", report_.fewerThanTwoNodes, "highway");
    json_.endObject();
    json_.memberLine("toCheck").beginObject();
    for (std::size_t kind = 0; kind < Finding::kinds; ++kind) {
      list(describe(static_cast<Finding::Kind>(kind)).name, report_.findings[kind],
           [&](Finding const& finding) { toCheck(finding); });
    }
    json_.endObject();
    json_.memberLine("crossingsAreAll").boolean(report_.crossingsAreAll);
    json_.memberLine("roads").beginList();
    for (Road const* const road : roadsById(*importer_.roadNetwork.get(), steps_)) {
      json_.itemLine().beginObject();
      json_.member("road").reference(*road);
      json_.member("ways").integers(wayIdsOf(*road, importer_));
      json_.endObject();
      steps_.step();
    }
    json_.endList();
    json_.endObject();
    json_.endLine();
  }

 private:
  template <class Entries, class WriteMembers>
  void list(std::string_view name, Entries const& entries, WriteMembers const& writeMembers) {
    json_.memberLine(name).beginList();
    for (auto const& entry : entries) {
      json_.itemLine().beginObject();
      writeMembers(entry);
      json_.endObject();
      steps_.step();
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

  // First what says what it is; then what all have.
  void toCheck(Finding const& finding) {
    FindingKind const& kind = describe(finding.kind);
    ReportRow const row = reportRow(finding, importer_, steps_);
    if (kind.isAboutOneWay) wayWithTag(*finding.ways.front(), kind.key);
    if (!finding.nodes.empty()) json_.member("node").integer(finding.nodes.front());
    if (finding.nodes.size() > 1) json_.member("nodes").integers(finding.nodes);
    if (!row.points.empty() || !row.lines.empty()) {
      GeoPosition const& first = row.points.empty() ? row.lines[0][0] : row.points[0];
      at({first.latitude, first.longitude});
    }
    if (finding.roads.size() == 1) json_.member("road").integer(finding.roads.front());
    if (finding.roads.size() > 1) json_.member("roads").integers(finding.roads);
    if (!kind.isAboutOneWay) {
      json_.member("ways").list(finding.ways, [&](Way const* way) {
        json_.beginObject();
        wayWithTag(*way, kind.key);
        json_.endObject();
      });
    }
    if (!finding.absentWays.empty()) json_.member("absentWays").integers(finding.absentWays);
    for (auto const& [name, value] : finding.details) {
      json_.member(name);
      std::visit([&](auto of) { write(of); }, value);
    }
    json_.member("severity").text(row.severity);
    if (!std::isnan(row.metres)) json_.member("metres").number(row.metres);
    json_.member("text").text(row.text);
    json_.member("geometry");
    writeGeometry(json_, row);
  }

  void write(std::int64_t value) { json_.integer(value); }
  void write(double value) { json_.number(value); }
  void write(std::string_view value) { json_.text(value); }

  void at(OpenStreetMap::WayNodes::Position const& position) {
    json_.member("latitude").number(position.latitude);
    json_.member("longitude").number(position.longitude);
  }

  // The tag's value, or null.
  void wayWithTag(Way const& way, std::string_view key) {
    json_.member("way").integer(way.id);
    json_.member(key);
    auto const found = way.tags.find(support::to_ustring(key));
    found == way.tags.end() ? json_.null() : json_.text(found->second);
  }

  ImportReport const& report_;
  RoadNetworkImporter const& importer_;
  support::Steps steps_;
  JsonWriter json_;
};

}  // namespace

void writeReport(ImportReport const& report, RoadNetworkImporter const& importer,
                 BufferedFile& output) {
  ReportWriter(report, importer, output).write();
}
