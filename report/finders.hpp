// What finds the places to check: a function for each matter, which adds to the report.
#pragma once

#include "importer/RoadNetworkImporter.hpp"
#include "report/ImportReport.hpp"
#include "report/RoadGraph.hpp"

/// Tags that say something odd, or something that the network does not hold.
void findOddTags(RoadNetworkImporter const& importer, ImportReport& report);

/// Nodes in the middle of two ways on different layers, which become connected.
void findSharedNodes(RoadNetworkImporter const& importer, ImportReport& report);

/// Joins of different names, and roads that lost directions of travel.
void findLossyJoins(RoadNetworkImporter const& importer, ImportReport& report);

/// Roads that rise or fall by more than 15 % somewhere.
void findSteepRoads(RoadNetworkImporter const& importer, ImportReport& report);

/// Places where two roads cross, or touch, less than 4.5 m apart in height and not at a common
/// Node. Pieces of road that begin at one Node do not cross each other. Where heights are not
/// finite, nothing is said. The search stays linear: in a map that is all crossings it ends early.
void findCrossings(RoadNetworkImporter const& importer, RoadGraph const& graph,
                   ImportReport& report);

/// Parts of the network that are not connected with the largest one, whatever the directions.
void findIslands(RoadNetworkImporter const& importer, RoadGraph const& graph, ImportReport& report);

/// Turn restrictions that have no place in the network.
void findUnmappedRestrictions(RoadNetworkImporter const& importer, ImportReport& report);

/// Nodes of the largest part from which the directions do not allow to get everywhere, or where
/// they do not allow to get.
void findTraps(RoadNetworkImporter const& importer, RoadGraph const& graph, ImportReport& report);
