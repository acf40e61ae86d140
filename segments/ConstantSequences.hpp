// Sequences of one value repeated.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "model/roadnetwork/RoadSegment.hpp"

/// Makes each sequence once. Most segments lie on the ground, and none has banking angles or
/// headings, so nearly all of their sequences but the centre line are shared ones.
class ConstantSequences {
 public:
  using Sequence = velora::roadnetwork::RoadSegmentImpl::SharedSequence;

  /// `size` times `value`, bit for bit.
  Sequence const& of(std::size_t size, double value) {
    Sequence& sequence = sequences_[{size, std::bit_cast<std::uint64_t>(value)}];
    if (sequence->size() != size) sequence = std::vector<double>(size, value);
    return sequence;
  }

 private:
  std::map<std::pair<std::size_t, std::uint64_t>, Sequence> sequences_;
};
