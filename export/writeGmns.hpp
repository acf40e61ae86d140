// The network for traffic assignment and simulation, as GMNS: the General Modeling Network
// Specification (https://github.com/zephyr-data-specs/GMNS).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "export/NetworkWalk.hpp"
#include "export/OutputFolder.hpp"

class RoadNetworkImporter;

inline constexpr std::string_view gmnsConfig = "config.csv";
inline constexpr std::string_view gmnsLinks = "link.csv";
inline constexpr std::string_view gmnsNodes = "node.csv";
inline constexpr std::string_view gmnsUses = "use_definition.csv";

/// The keys of the tags that links have columns of GMNS's own from.
std::vector<std::string> gmnsTags();

/// CSV (RFC 4180, lines ending in a line feed), UTF-8. Links are directed: a two-way road is two of
/// them, one each way, with the same road_id. Lengths are metres; geometry is well-known text,
/// longitude before latitude, from the link's from_node to its to_node. free_speed (km/h, see
/// speedLimit; 200 at most, as GMNS has it) and lanes (see laneCount) are those in the link's
/// direction, allowed_uses those that may use it (see mayUse), or "none"; use_definition.csv tells
/// what these are. Where a road has pieces that differ, the lowest counts, and what all of them
/// allow; a number that one of them does not tell is unknown. Empty fields are unknown, and NaN in
/// z_coord, as GMNS has it there.
void writeGmns(RoadNetworkImporter const& importer, OutputFolder const& folder);
