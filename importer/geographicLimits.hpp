// The geographic extent of an import.
#pragma once

#include <vector>

class RoadNetworkImporter;

/// Latitude limits, then longitude limits, in degrees: four values, or none when one is unknown.
/// The importer must have run.
std::vector<double> geographicLimits(RoadNetworkImporter const& importer);
