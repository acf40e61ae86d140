// How high roads lie.
#pragma once

#include <cstddef>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/lookup.hpp"

/// Of values that are added in the order that counts. NaN without any.
class Mean {
 public:
  void add(double value) noexcept {
    sum_ += value;
    ++count_;
  }
  double value() const noexcept { return sum_ / static_cast<double>(count_); }

 private:
  double sum_ = 0.0;
  std::size_t count_ = 0;
};

/// The mean elevation of each road's ways, in metres, by road id; none for a road that was absorbed
/// by another.
class RoadElevations {
 public:
  /// Of an importer whose roads are joined. Throws std::out_of_range("_Map_base::at") for a way
  /// that is in no table.
  RoadElevations(RoadNetworkImporter& importer, support::Steps& steps);

  /// Throws std::out_of_range("_Map_base::at") for a road that has none.
  double at(RoadWayIds::RoadId road) const {
    if (road >= isKnown_.size() || !isKnown_[road]) support::throwMissing();
    return elevations_[road];
  }

 private:
  std::vector<bool> isKnown_;
  std::vector<double> elevations_;
};
