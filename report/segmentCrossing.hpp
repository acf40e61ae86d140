// Where two straight lines cross.
#pragma once

#include <optional>

struct PlanePoint {
  double x;
  double y;
  friend bool operator==(PlanePoint const&, PlanePoint const&) = default;
};

/// Between two points that differ.
struct PlaneSegment {
  PlanePoint from;
  PlanePoint to;
};

/// As shares of their lengths; 0 or 1 exactly where one of the segments has its end.
struct SegmentCrossing {
  double onOne;
  double onOther;
};

/// Where they cross or touch; one of the places where they lie on one another.
std::optional<SegmentCrossing> segmentCrossing(PlaneSegment const& one, PlaneSegment const& other);
