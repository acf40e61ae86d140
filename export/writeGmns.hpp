// The network for traffic assignment and simulation, as GMNS: the General Modeling Network
// Specification (https://github.com/zephyr-data-specs/GMNS).
#pragma once

#include <string_view>
#include <vector>

#include "export/NetworkWalk.hpp"
#include "export/OutputFolder.hpp"

class RoadNetworkImporter;

/// What writeGmns puts into the folder.
inline std::vector<std::string_view> const gmnsFiles{"config.csv", "link.csv", "node.csv"};

/// CSV (RFC 4180, lines ending in a line feed), UTF-8. Links are directed: a two-way road is two of
/// them, one each way, with the same road_id. Lengths are metres; geometry is well-known text,
/// longitude before latitude, from the link's from_node to its to_node. Empty fields are unknown.
void writeGmns(RoadNetworkImporter const& importer, OutputFolder const& folder,
               Progress const& progress);
