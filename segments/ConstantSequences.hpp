// Sequences of one value repeated.
#pragma once

#include <cstddef>
#include <vector>

#include "model/roadnetwork/RoadSegment.hpp"

/// Makes one sequence of each size. Most segments lie on the ground, and none has banking angles or
/// headings, so nearly all of their sequences but the centre line are shared ones.
class ConstantSequences {
 public:
  using Sequence = velora::roadnetwork::RoadSegmentImpl::SharedSequence;

  explicit ConstantSequences(double value) : value_(value) {}

  /// `size` times the value. Holds until a call with a larger size.
  Sequence const& of(std::size_t size) {
    if (size >= bySize_.size()) bySize_.resize(size + 1);
    if (bySize_[size]->size() != size) bySize_[size] = std::vector<double>(size, value_);
    return bySize_[size];
  }

 private:
  double value_;
  std::vector<Sequence> bySize_;
};
