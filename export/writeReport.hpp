// The report on an import as JSON.
#pragma once

#include "export/BufferedFile.hpp"
#include "report/ImportReport.hpp"

/// One entry a line: way ids, node ids, coordinates in degrees, the values that matter; at the end
/// the OSM ways that each road was made of.
void writeReport(ImportReport const& report, RoadNetworkImporter const& importer,
                 BufferedFile& output);
