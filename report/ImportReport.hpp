// What became of each way, and what a careful person would look at.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "report/Finding.hpp"

/// Read from a finished import, whose records and roads it points to. Every way with a "highway"
/// tag is either imported or in one of the three lists of ways that are not.
struct ImportReport {
  using Way = OpenStreetMap::Way;
  using Id = OpenStreetMap::Id;

  struct MissingNodes {
    Way const* way;
    std::size_t count;      ///< how many references the file has no node for
    std::vector<Id> first;  ///< the first of them, ten at most
  };

  std::size_t highwayWays = 0;
  std::size_t importedWays = 0;

  std::vector<Way const*> notARoad;  ///< the value of "highway" is not that of a road
  std::vector<MissingNodes> missingNodes;
  std::vector<Way const*> fewerThanTwoNodes;

  /// By kind.
  std::array<std::vector<Finding>, Finding::kinds> findings;
  /// False for a map where so much overlaps that the search for crossings had to end early.
  bool crossingsAreAll = true;

  void add(Finding finding) {
    findings[static_cast<std::size_t>(finding.kind)].push_back(std::move(finding));
  }
  std::size_t notImported() const {
    return notARoad.size() + missingNodes.size() + fewerThanTwoNodes.size();
  }
  std::size_t toCheck() const {
    std::size_t count = 0;
    for (auto const& ofKind : findings) count += ofKind.size();
    return count;
  }
};

/// The lists are by ascending id of the way, or of the road and the node; islands and traps begin
/// with the largest.
ImportReport reportOn(RoadNetworkImporter const& importer);
