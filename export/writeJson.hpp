// The whole network as JSON (RFC 8259).
#pragma once

#include "export/BufferedFile.hpp"
#include "export/NetworkWalk.hpp"

class RoadNetworkImporter;

/// Nodes and roads by ascending id, one a line; UTF-8; each number reads back to the same bits, NaN
/// is null, and an infinite one is written as 1e999. The same network gives the same bytes.
void writeJson(RoadNetworkImporter const& importer, BufferedFile& file);
