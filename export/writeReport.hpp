// The report on an import, in the formats that it is written in.
#pragma once

#include <string_view>

#include "export/BufferedFile.hpp"
#include "export/OutputFolder.hpp"
#include "report/ImportReport.hpp"

/// JSON, one entry a line: way ids, node ids, coordinates in degrees, the values that matter; at
/// the end the OSM ways that each road was made of.
void writeReport(ImportReport const& report, RoadNetworkImporter const& importer,
                 BufferedFile& output);

/// The places to check alone, for maps: a FeatureCollection (RFC 7946).
void writeReportGeoJson(ImportReport const& report, RoadNetworkImporter const& importer,
                        BufferedFile& output);

/// The same as layers "check_points" and "check_lines" of a GeoPackage.
inline constexpr std::string_view reportGeoPackage = "report.gpkg";
void writeReportGeoPackage(ImportReport const& report, RoadNetworkImporter const& importer,
                           OutputFolder const& folder);
