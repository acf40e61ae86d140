// The network as a graph, as GraphML (http://graphml.graphdrawing.org).
#pragma once

#include "export/BufferedFile.hpp"
#include "export/NetworkWalk.hpp"

class RoadNetworkImporter;

/// A directed graph. A node's id is its OSM id; its x and y, which Gephi takes for its place, are
/// longitude and latitude in degrees, street_count how many ends of roads lie at it. A two-way road
/// is two edges, one each way, with the same road_id; geometry is well-known text from the edge's
/// source to its target. Attributes are called as in OSMnx (https://osmnx.readthedocs.io) where it
/// has them: osmid is a way's id, or "[1, 2]" for more; oneway and reversed (against the direction
/// of the road's first way, on two-way roads) are "True" or "False". What is empty or not finite is
/// left out. Characters that XML can't hold become U+FFFD.
void writeGraphMl(RoadNetworkImporter const& importer, BufferedFile& file);
