// The key "layer" (https://wiki.openstreetmap.org/wiki/Key:layer) and what it says of heights.
#pragma once

#include <optional>

#include "osm/records.hpp"

/// The number that the value starts with, if there is one: what a stream reads in the classic
/// locale.
std::optional<double> layerNumber(OpenStreetMap::Tags const& tags);

/// 4.9 m for each layer, fractions and all; 0 when there is no tag, or no number at its start.
double wayLayerElevation(OpenStreetMap::Tags const& tags);

/// Whether there is a layer that is no number, or lies beyond the usual -5 to 5.
bool hasOddLayer(OpenStreetMap::Tags const& tags);

/// Whether it is a bridge or a tunnel.
bool isBridgeOrTunnel(OpenStreetMap::Tags const& tags);

/// Whether a bridge or tunnel says nothing of its layer, and so lies on the ground: not where it
/// belongs there, as a passage through a building or a covered way does.
bool isLevelBridge(OpenStreetMap::Tags const& tags);
