// What a person wants to know after an import.
#pragma once

#include <iosfwd>

class RoadNetworkImporter;

/// `seconds` is what the import took. The importer must have run.
void printSummary(RoadNetworkImporter const& importer, double seconds, std::ostream& out);
