// The extent of boxes and points on the globe.
#pragma once

#include <limits>
#include <vector>

#include "osm/records.hpp"

namespace OpenStreetMap {

/// A lowest and a highest value.
class Range {
 public:
  void add(double lowest, double highest) noexcept;
  /// Unknown while nothing has been added.
  Limits limits() const noexcept;

 private:
  double low_ = std::numeric_limits<double>::infinity();
  double high_ = -std::numeric_limits<double>::infinity();
};

/// The union of boxes, some of which may cross the antimeridian.
class Bounds {
 public:
  /// `west` is greater than `east` where the box crosses the antimeridian. Throws
  /// std::runtime_error when `south` is greater than `north`.
  void add(double south, double west, double north, double east);

  bool empty() const noexcept { return boxes_.empty(); }
  Limits latitudeLimits() const noexcept { return latitude_.limits(); }
  /// Where no box crosses the antimeridian, neither do the limits. Otherwise they are the shortest
  /// that hold every box; -180 and 180 where the boxes leave nothing out.
  Limits longitudeLimits() const;

 private:
  Range latitude_;
  std::vector<Limits> boxes_;  // their longitudes
};

}  // namespace OpenStreetMap
