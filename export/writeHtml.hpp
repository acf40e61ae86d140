// The network as a page to look at, in one file that needs nothing else.
#pragma once

#include "export/BufferedFile.hpp"
#include "report/ImportReport.hpp"

class RoadNetworkImporter;

/// A map with all that the network and `report`, which is about it, say of each road and Node. The
/// page opens from disk, asks the network for nothing, and lets nothing in it do so.
/// docs/map-page.md has what is in it.
void writeHtml(RoadNetworkImporter const& importer, ImportReport const& report, BufferedFile& file);

/// Beyond that many roads, browsers take long or run out of memory.
inline constexpr std::size_t comfortableRoads = 300'000;
