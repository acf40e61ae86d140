// The third stage: the Nodes of the road graph.
#pragma once

class RoadNetworkImporter;

/// Fills `junctionNodeIds` with the ends of the selected ways and with every node that their
/// interiors pass more than once in all, and makes a Node in the network for each: named by its id
/// in decimal, at elevation 0.
void createNodes(RoadNetworkImporter& importer);
