// A small counter of references.
#pragma once

#include <cstdint>
#include <limits>

namespace kb::zero::internal {

/// Counts the references to one object, in 32 bits. It is not atomic. A count that reaches its
/// largest value stays there, so that the object is never deleted rather than deleted too early;
/// that takes 32 GiB of handles to one object.
class ReferenceCount {
 public:
  void add() noexcept { count_ += isStuck() ? 0 : 1; }
  /// Returns whether it was the last one.
  bool remove() noexcept {
    count_ -= isStuck() ? 0 : 1;
    return count_ == 0;
  }
  std::uint32_t value() const noexcept { return count_; }

 private:
  bool isStuck() const noexcept { return count_ == std::numeric_limits<std::uint32_t>::max(); }

  std::uint32_t count_ = 0;
};

}  // namespace kb::zero::internal
