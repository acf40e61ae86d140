// The third stage: the Nodes of the road graph.
#pragma once

#include <vector>

#include "graph/NodeUse.hpp"

class RoadNetworkImporter;

/// Fills `junctionNodeIds` with the ends of the selected ways and with every node that their
/// interiors pass more than once in all, and makes a Node in the network for each: named by its id
/// in decimal, at elevation 0.
void createNodes(RoadNetworkImporter& importer);

/// The two halves of it, for those who have only some of the ways that meet: how the selected ways
/// use each node, by its number among the nodes under ways, and the Nodes of `junctionNodeIds`.
std::vector<NodeUse> countNodeUses(RoadNetworkImporter const& importer);
void createJunctionNodes(RoadNetworkImporter& importer);
