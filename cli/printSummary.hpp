// What a person wants to know after an import.
#pragma once

#include <iosfwd>

#include "report/ImportReport.hpp"

/// `seconds` is what the import took. The importer must have run.
void printSummary(RoadNetworkImporter const& importer, ImportReport const& report, double seconds,
                  std::ostream& out);
