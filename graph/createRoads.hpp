// The fourth stage: the Roads between the Nodes.
#pragma once

class RoadNetworkImporter;

/// Cuts every selected way at its junctions and adds a Road to the network for each piece: numbered
/// from 1 in the order of the ways, with the way's name and direction, its two Nodes and its centre
/// line. Fills `roadWayIds` with the way of each road.
void createRoads(RoadNetworkImporter& importer);
