// The seventh stage: elevations from the layers of the ways.
#pragma once

#include <optional>

#include "osm/records.hpp"

class RoadNetworkImporter;

/// Gives each road the mean elevation of its ways, each Node the mean of its roads (NaN without
/// any), and each segment a profile from its start Node over the road's elevation to its end Node.
/// Throws std::out_of_range("_Map_base::at") for a way or road that is in no table.
void assignSegmentElevations(RoadNetworkImporter& importer);

/// 4.9 m for each level of the way's "layer" tag (https://wiki.openstreetmap.org/wiki/Key:layer),
/// fractions and all; 0 when there is none or its value does not start with a number.
double wayLayerElevation(OpenStreetMap::Tags const& tags);

/// The number that the value of "layer" starts with, if there is one.
std::optional<double> layerNumber(OpenStreetMap::Tags const& tags);
