// A place to check as a row of a table, which is how GIS formats see the report.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "export/geoJson.hpp"
#include "osm/records.hpp"
#include "report/ImportReport.hpp"

struct ReportRow {
  std::string_view kind;
  std::string_view severity;
  double metres;  ///< NaN where they have no meaning
  std::vector<OpenStreetMap::Id> wayIds;
  std::vector<OpenStreetMap::Id> nodeIds;
  std::string text;  ///< a sentence; UTF-8 without control characters
  /// Either points or lines; elevations are 0.
  std::vector<GeoPosition> points;
  std::vector<GeoLine> lines;
};

/// `importer` is the one that was reported on. Polls the steps for each of the lines.
ReportRow reportRow(Finding const& finding, RoadNetworkImporter const& importer,
                    support::Steps& steps);

/// As a geometry object of GeoJSON.
void writeGeometry(JsonWriter& json, ReportRow const& row);

/// Calls `action` with the row of each place to check, by kind.
template <class Action>
void forEachRow(ImportReport const& report, RoadNetworkImporter const& importer,
                Action const& action) {
  support::Steps steps(importer.progress(), support::Stage::writingReport, report.toCheck());
  for (auto const& findings : report.findings) {
    for (Finding const& finding : findings) {
      action(reportRow(finding, importer, steps));
      steps.step();
    }
  }
}
