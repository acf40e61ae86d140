// The second stage: names and directions of travel.
#pragma once

class RoadNetworkImporter;

/// Fills `wayNames` and `wayDirections` with one entry for each selected way, from its tags.
void collectWayAttributes(RoadNetworkImporter& importer);
