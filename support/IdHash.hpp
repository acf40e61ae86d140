// The hash of every table keyed by an id.
#pragma once

#include <cstddef>
#include <cstdint>

namespace support {

/// Mixes all bits of an id but the lowest six into the hash (the 64-bit finaliser of
/// MurmurHash3), so that ids in regular steps, whatever the step, spread over a table of any size.
/// The lowest six stay as they are: ids that follow one another, as those of a way's nodes mostly
/// do, are neighbours in an open-addressing table and share its cache lines.
struct IdHash {
  std::size_t operator()(std::uint64_t id) const noexcept {
    std::uint64_t group = id >> 6;
    group ^= group >> 33;
    group *= 0xff51afd7ed558ccdULL;
    group ^= group >> 33;
    group *= 0xc4ceb9fe1a85ec53ULL;
    group ^= group >> 33;
    return group << 6 | (id & 63);
  }
  std::size_t operator()(std::int64_t id) const noexcept {
    return (*this)(static_cast<std::uint64_t>(id));
  }
};

}  // namespace support
