#include "export/ReportRow.hpp"

#include <cmath>
#include <utility>

#include "report/lineLength.hpp"
#include "report/sentence.hpp"

namespace {

GeoLine lineOf(Finding::Stretch const& stretch) {
  GeoLine line;
  line.reserve(stretch.latitudes.size());
  for (std::size_t i = 0; i < stretch.latitudes.size(); ++i) {
    line.push_back({stretch.longitudes[i], stretch.latitudes[i], 0.0});
  }
  return line;
}

GeoLine lineOf(OpenStreetMap::Way const& way, OpenStreetMap::WayNodes const& nodes) {
  GeoLine line;
  for (auto const number : nodes.numbersOf(way)) {
    line.push_back({nodes[number].longitude, nodes[number].latitude, 0.0});
  }
  return line;
}

double lengthOf(std::vector<GeoLine> const& lines) {
  double length = 0.0;
  for (GeoLine const& line : lines) {
    for (std::size_t i = 1; i < line.size(); ++i) {
      length += distance(line[i - 1].latitude, line[i - 1].longitude, line[i].latitude,
                         line[i].longitude);
    }
  }
  return length;
}

}  // namespace

ReportRow reportRow(Finding const& finding, RoadNetworkImporter const& importer,
                    support::Steps& steps) {
  ReportRow row{describe(finding.kind).name,
                nameOf(finding.severity),
                finding.metres,
                {},
                finding.nodes,
                {},
                {},
                {}};
  for (auto const* const way : finding.ways) row.wayIds.push_back(way->id);
  row.wayIds.insert(row.wayIds.end(), finding.absentWays.begin(), finding.absentWays.end());
  for (auto const& point : finding.points) {
    row.points.push_back({point.longitude, point.latitude, 0.0});
  }
  if (row.points.empty()) {
    for (auto const& stretch : finding.stretches) {
      steps.poll();
      row.lines.push_back(lineOf(stretch));
    }
    if (row.lines.empty()) {
      for (auto const* const way : finding.ways) {
        GeoLine line = lineOf(*way, importer.reader.wayNodes);
        // The file may have none of its nodes.
        if (!line.empty()) row.lines.push_back(std::move(line));
      }
    }
    if (std::isnan(row.metres) && !row.lines.empty()) row.metres = lengthOf(row.lines);
  }
  row.text = sentence(finding, row.metres);
  return row;
}

void writeGeometry(JsonWriter& json, ReportRow const& row) {
  if (!row.points.empty()) return writePoints(json, row.points);
  if (row.lines.empty()) return json.null();
  std::vector<GeoLine> lines;
  for (GeoLine const& line : row.lines) {
    for (GeoLine& part : cutAtAntimeridian(line)) lines.push_back(std::move(part));
  }
  writeLines(json, lines, false);
}
