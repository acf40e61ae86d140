#include "report/segmentCrossing.hpp"

#include <algorithm>
#include <cmath>

namespace {

// Positive where `point` is to the left of the line, 0 where it is on it.
double side(PlaneSegment const& line, PlanePoint const& point) {
  return (line.to.x - line.from.x) * (point.y - line.from.y) -
         (line.to.y - line.from.y) * (point.x - line.from.x);
}

// Of a point on the line. None beyond the ends.
std::optional<double> shareAt(PlaneSegment const& line, PlanePoint const& point) {
  if (point == line.from) return 0.0;
  if (point == line.to) return 1.0;
  double const x = line.to.x - line.from.x;
  double const y = line.to.y - line.from.y;
  double const share =
      std::abs(x) > std::abs(y) ? (point.x - line.from.x) / x : (point.y - line.from.y) / y;
  if (share < 0.0 || share > 1.0) return std::nullopt;
  return share;
}

bool differ(double sideOfOne, double sideOfOther) {
  return (sideOfOne < 0.0 && sideOfOther > 0.0) || (sideOfOne > 0.0 && sideOfOther < 0.0);
}

}  // namespace

std::optional<SegmentCrossing> segmentCrossing(PlaneSegment const& one, PlaneSegment const& other) {
  double const from = side(other, one.from);
  double const to = side(other, one.to);
  double const otherFrom = side(one, other.from);
  double const otherTo = side(one, other.to);
  if (differ(from, to) && differ(otherFrom, otherTo)) {
    return SegmentCrossing{from / (from - to), otherFrom / (otherFrom - otherTo)};
  }
  if (from == 0.0) {
    if (auto const share = shareAt(other, one.from)) return SegmentCrossing{0.0, *share};
  }
  if (to == 0.0) {
    if (auto const share = shareAt(other, one.to)) return SegmentCrossing{1.0, *share};
  }
  if (otherFrom == 0.0) {
    if (auto const share = shareAt(one, other.from)) return SegmentCrossing{*share, 0.0};
  }
  if (otherTo == 0.0) {
    if (auto const share = shareAt(one, other.to)) return SegmentCrossing{*share, 1.0};
  }
  return std::nullopt;
}
