// The hash of every table keyed by an id.
#pragma once

#include <cstddef>
#include <cstdint>

namespace support {

/// Mixes all bits of an id into all bits of the hash (the 64-bit finaliser of MurmurHash3), so that
/// ids in regular steps, whatever the step, spread over any number of buckets.
struct IdHash {
  std::size_t operator()(std::uint64_t id) const noexcept {
    id ^= id >> 33;
    id *= 0xff51afd7ed558ccdULL;
    id ^= id >> 33;
    id *= 0xc4ceb9fe1a85ec53ULL;
    id ^= id >> 33;
    return id;
  }
  std::size_t operator()(std::int64_t id) const noexcept {
    return (*this)(static_cast<std::uint64_t>(id));
  }
};

}  // namespace support
