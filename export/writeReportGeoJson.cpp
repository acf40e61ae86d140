#include <cstdint>

#include "export/JsonWriter.hpp"
#include "export/ReportRow.hpp"
#include "export/writeReport.hpp"

void writeReportGeoJson(ImportReport const& report, RoadNetworkImporter const& importer,
                        BufferedFile& output) {
  JsonWriter json(output);
  beginFeatureCollection(json);
  std::uint64_t id = 0;
  forEachRow(report, importer, [&](ReportRow const& row) {
    json.itemLine().beginObject();
    json.member("type").text("Feature");
    json.member("id").integer(++id);
    json.member("geometry");
    writeGeometry(json, row);
    json.member("properties").beginObject();
    json.member("kind").text(row.kind);
    json.member("severity").text(row.severity);
    json.member("metres").number(row.metres);
    json.member("way_ids").integers(row.wayIds);
    json.member("node_ids").integers(row.nodeIds);
    json.member("text").text(row.text);
    json.endObject();
    json.endObject();
  });
  json.endList();
  json.endObject();
  json.endLine();
}
