// How ways use a node.
#pragma once

#include <algorithm>
#include <cstdint>

/// How many of the selected ways' ends lie at a node, and how often their interiors pass it: as far
/// as it matters. The uses by two sets of ways add up to those by both.
class NodeUse {
 public:
  NodeUse() = default;
  explicit NodeUse(std::uint8_t bits) noexcept : ends_(bits >> 4), passes_(bits & 15) {}
  /// All of it in eight bits, for those who send it elsewhere.
  std::uint8_t bits() const noexcept { return static_cast<std::uint8_t>(ends_ << 4 | passes_); }

  void addEnd() noexcept { *this += NodeUse(1, 0); }
  void addPass() noexcept { *this += NodeUse(0, 1); }
  NodeUse& operator+=(NodeUse other) noexcept {
    ends_ = std::min<std::uint8_t>(many, static_cast<std::uint8_t>(ends_ + other.ends_));
    passes_ = std::min<std::uint8_t>(many, static_cast<std::uint8_t>(passes_ + other.passes_));
    return *this;
  }

  bool isJunction() const noexcept { return ends_ > 0 || passes_ > 1; }
  /// Whether two ends of roads meet there and nothing else.
  bool isContinuation() const noexcept { return ends_ == 2 && passes_ == 0; }

 private:
  static constexpr std::uint8_t many = 3;

  NodeUse(std::uint8_t ends, std::uint8_t passes) noexcept : ends_(ends), passes_(passes) {}

  std::uint8_t ends_ : 4 = 0;
  std::uint8_t passes_ : 4 = 0;
};
static_assert(sizeof(NodeUse) == 1);
