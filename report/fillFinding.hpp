// Filling in findings.
#pragma once

#include <algorithm>
#include <cstddef>

#include "importer/RoadNetworkImporter.hpp"
#include "report/Finding.hpp"

/// So many ways and nodes of a finding are named; more would be no help.
constexpr std::size_t namedAtMost = 10;

inline void addWay(OpenStreetMap::Way const& way, Finding& finding) {
  auto& ways = finding.ways;
  if (ways.size() == namedAtMost || std::find(ways.begin(), ways.end(), &way) != ways.end()) return;
  ways.push_back(&way);
}

/// The ways that the road was made of, in their order along it.
inline void addWaysOf(velora::roadnetwork::RoadImpl const& road,
                      RoadNetworkImporter const& importer, Finding& finding) {
  if (finding.ways.size() == namedAtMost) return;
  forEachPiece(road, importer, [&](RoadPiece const& piece) { addWay(*piece.way, finding); });
}
