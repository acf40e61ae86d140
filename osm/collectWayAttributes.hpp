// The second stage: names and directions of travel.
#pragma once

#include <string>

#include "model/roadnetwork/DirectionOfTravel.hpp"
#include "osm/records.hpp"

class RoadNetworkImporter;

/// Fills `wayNames` and `wayDirections` with one entry for each selected way.
void collectWayAttributes(RoadNetworkImporter& importer);

/// The value of "name" as it stands, or the way's id in decimal where there is no such tag
/// (https://wiki.openstreetmap.org/wiki/Key:name).
std::u16string wayName(OpenStreetMap::Id id, OpenStreetMap::Tags const& tags);

/// "oneway" yes or 1 is forward, -1 backward, anything else both
/// (https://wiki.openstreetmap.org/wiki/Key:oneway).
velora::roadnetwork::DirectionOfTravel wayDirection(OpenStreetMap::Tags const& tags);
