// The report on an import as JSON.
#pragma once

#include <string>

#include "export/BufferedFile.hpp"
#include "report/ImportReport.hpp"

/// One entry a line: way ids, node ids, coordinates in degrees, the values that matter.
void writeReport(ImportReport const& report, RoadNetworkImporter const& importer,
                 BufferedFile& output);
