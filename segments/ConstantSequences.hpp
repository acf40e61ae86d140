// Sequences of one value repeated.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/roadnetwork/RoadSegment.hpp"
#include "support/IdMap.hpp"

/// Makes each sequence once. Most segments lie on the ground, and none has banking angles or
/// headings, so nearly all of their sequences but the centre line are shared ones.
class ConstantSequences {
 public:
  using Sequence = velora::roadnetwork::RoadSegmentImpl::SharedSequence;

  /// `size` times `value`, bit for bit. Holds until the next call.
  Sequence const& of(std::size_t size, double value) {
    std::vector<Sequence>& bySize = sequences_[std::bit_cast<std::uint64_t>(value)];
    if (size >= bySize.size()) bySize.resize(size + 1);
    if (bySize[size]->size() != size) bySize[size] = std::vector<double>(size, value);
    return bySize[size];
  }

 private:
  support::ModelIdMap<std::vector<Sequence>> sequences_;  // by the bits of the value
};
