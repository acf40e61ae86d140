// Finds boxes that overlap.
#pragma once

#include <boost/geometry/geometries/box.hpp>
#include <boost/geometry/geometries/point.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/iterator/function_output_iterator.hpp>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "report/segmentCrossing.hpp"
#include "support/Progress.hpp"

/// Boxes along the axes, each with a number, in a tree that is built in one go. Coordinates are
/// kept as floats, outwards: boxes that come near to touching may count as overlapping.
class BoxIndex {
 public:
  using Number = std::uint32_t;
  using Corner = boost::geometry::model::point<float, 2, boost::geometry::cs::cartesian>;
  using Box = boost::geometry::model::box<Corner>;
  using Entry = std::pair<Box, Number>;

  static Box box(PlanePoint const& low, PlanePoint const& high) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    auto const below = [](double value) {
      return std::nextafter(static_cast<float>(value), -infinity);
    };
    auto const above = [](double value) {
      return std::nextafter(static_cast<float>(value), infinity);
    };
    return {{below(low.x), below(low.y)}, {above(high.x), above(high.y)}};
  }

  /// Polls `steps`, which must outlive the index, with whatever boxes it looks at.
  BoxIndex(std::vector<Entry> const& entries, support::Steps& steps)
      : tree_(entries, Parameters(), BoxOf{&steps}) {}

  /// Calls `action` with each entry whose box overlaps this one.
  template <class Action>
  void forEachOverlap(Box const& box, Action const& action) const {
    tree_.query(boost::geometry::index::intersects(box),
                boost::make_function_output_iterator(action));
  }
  /// Calls `action` with each entry; those that are near come one after the other.
  template <class Action>
  void forEach(Action const& action) const {
    for (Entry const& entry : tree_) action(entry);
  }

 private:
  using Parameters = boost::geometry::index::linear<16>;
  struct BoxOf {
    using result_type = Box const&;
    Box const& operator()(Entry const& entry) const {
      steps->poll();
      return entry.first;
    }
    support::Steps* steps;
  };

  boost::geometry::index::rtree<Entry, Parameters, BoxOf> tree_;
};
