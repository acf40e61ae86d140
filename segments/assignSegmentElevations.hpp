// The seventh stage: elevations from the layers of the ways.
#pragma once

class RoadNetworkImporter;

/// Gives each road the mean elevation of its ways, each Node the mean of its roads (NaN without
/// any), and each segment a profile from its start Node over the road's elevation to its end Node.
/// Throws std::out_of_range("_Map_base::at") for a way or road that is in no table.
void assignSegmentElevations(RoadNetworkImporter& importer);
