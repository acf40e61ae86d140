// The hash of every table keyed by an id.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "support/hashSecret.hpp"

namespace support {

/// Mixes all bits of an id but the lowest six into the hash, so that ids spread over a table of any
/// size, whether they come in regular steps or were chosen to collide. The lowest six stay as they
/// are: ids that follow one another, as those of a way's nodes mostly do, are neighbours in an
/// open-addressing table and share its cache lines.
class IdHash {
 public:
  /// Throws as `hashSecret` does.
  IdHash() : secret_(hashSecret().ids) {}

  std::size_t operator()(std::uint64_t id) const noexcept {
    std::uint64_t const group = id >> 6;
    return fold(fold(group, secret_[0], secret_[1]), secret_[2], secret_[3]) << 6 | (id & 63);
  }
  std::size_t operator()(std::int64_t id) const noexcept {
    return (*this)(static_cast<std::uint64_t>(id));
  }

 private:
  // Both halves of a product of 128 bits: the upper one carries the high bits of `value` down,
  // where a table looks. An even factor would lose bits of it.
  static std::uint64_t fold(std::uint64_t value, std::uint64_t mask,
                            std::uint64_t factor) noexcept {
    __extension__ using Product = unsigned __int128;
    Product const product = Product{value ^ mask} * (factor | 1);
    return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
  }

  std::array<std::uint64_t, 4> secret_;
};

}  // namespace support
