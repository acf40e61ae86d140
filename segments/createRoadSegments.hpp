// The sixth stage: one segment for each road.
#pragma once

class RoadNetworkImporter;

/// Makes a RoadSegmentNode for each Node and a RoadSegment for each Road, with the same ids, the
/// road's centre line, elevations and banking angles of 0 and headings of NaN (not computed).
/// Segments that meet share a RoadSegmentNode. Throws std::out_of_range("_Map_base::at") for a road
/// at a Node that is not in the network.
void createRoadSegments(RoadNetworkImporter& importer);
