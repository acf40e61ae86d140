// The network for traffic assignment and simulation, as GMNS: the General Modeling Network
// Specification (https://github.com/zephyr-data-specs/GMNS).
#pragma once

#include <string_view>

#include "export/NetworkWalk.hpp"
#include "export/OutputFolder.hpp"

class RoadNetworkImporter;

inline constexpr std::string_view gmnsConfig = "config.csv";
inline constexpr std::string_view gmnsLinks = "link.csv";
inline constexpr std::string_view gmnsNodes = "node.csv";

/// CSV (RFC 4180, lines ending in a line feed), UTF-8. Links are directed: a two-way road is two of
/// them, one each way, with the same road_id. Lengths are metres; geometry is well-known text,
/// longitude before latitude, from the link's from_node to its to_node. Empty fields are unknown.
void writeGmns(RoadNetworkImporter const& importer, OutputFolder const& folder,
               Progress const& progress);
