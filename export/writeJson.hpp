// The whole network as JSON (RFC 8259).
#pragma once

#include <vector>

#include "export/OutputFile.hpp"
#include "model/roadnetwork/RoadNetwork.hpp"

/// Nodes and roads by ascending id, one a line; UTF-8; each number reads back to the same bits, NaN
/// is null, and an infinite one is written as 1e999. The same network gives the same bytes.
void writeJson(velora::roadnetwork::RoadNetwork const& network, std::vector<double> const& limits,
               OutputFile& output);
