// What a person wants to know after an import.
#pragma once

#include <iosfwd>

#include "cli/Options.hpp"
#include "cli/Stopwatch.hpp"
#include "report/ImportReport.hpp"

/// What is in the network, and in the end what `time` says. The importer must have run.
void printSummary(RoadNetworkImporter const& importer, ImportReport const& report, Stopwatch& time,
                  std::ostream& out);

/// One line: what was written. Only for options with an output.
void printWritten(Options const& options, RoadNetworkImporter const& importer,
                  ImportReport const& report, std::ostream& out);
