// From the relations of a file to the roads of a network.
#pragma once

#include "turns/TurnRestriction.hpp"

class RoadNetworkImporter;

/// Finds the place of each restriction in the network as it is, with roads joined and one-way as
/// the import's options have it. The importer must have run; without `ImportOptions::restrictions`
/// there are none.
TurnRestrictions mapRestrictions(RoadNetworkImporter const& importer);
