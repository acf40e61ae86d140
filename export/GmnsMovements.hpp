// Turn restrictions in GMNS.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "export/OutputFolder.hpp"
#include "support/ModelId.hpp"

class RoadNetworkImporter;

inline constexpr std::string_view gmnsMovements = "movement.csv";
inline constexpr std::string_view gmnsRestrictions = "restriction.csv";

/// Writes them when all links are written. "movement.csv" is the standard's own: a line for each
/// restriction at one Node, from link to link, with a capacity of 0 where nobody may ever go that
/// way. The standard has nothing for those over roads, so "restriction.csv" has all of them.
class GmnsMovements {
 public:
  /// To be told of each road, by ascending ids: the number of the first of its links, which is that
  /// from start to end unless it may not be travelled so.
  void addLinks(support::ModelId road, std::int64_t firstLink) {
    firstLinks_.resize(road + 1);
    firstLinks_[road] = firstLink;
  }

  void write(RoadNetworkImporter const& importer, OutputFolder const& folder) const;

 private:
  std::vector<std::int64_t> firstLinks_;  // by road
};
