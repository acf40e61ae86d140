// How ways use a node.
#pragma once

#include <algorithm>
#include <cstdint>

/// How many of the selected ways' ends lie at a node, and how often their interiors pass it: as far
/// as it matters. The uses by two sets of ways add up to those by both.
class NodeUse {
 public:
  NodeUse() = default;
  explicit NodeUse(std::uint8_t bits) noexcept : bits_(bits) {}
  /// All of it, for those who send it elsewhere.
  std::uint8_t bits() const noexcept { return bits_; }

  void addEnd() noexcept { *this += NodeUse(anEnd); }
  void addPass() noexcept { *this += NodeUse(1); }
  NodeUse& operator+=(NodeUse other) noexcept {
    unsigned const ends = std::min(many, this->ends() + other.ends());
    unsigned const passes = std::min(many, this->passes() + other.passes());
    bits_ = static_cast<std::uint8_t>(ends * anEnd + passes);
    return *this;
  }

  bool isJunction() const noexcept { return ends() > 0 || passes() > 1; }
  /// Whether two ends of roads meet there and nothing else.
  bool isContinuation() const noexcept { return ends() == 2 && passes() == 0; }

 private:
  static constexpr unsigned many = 3;
  static constexpr std::uint8_t anEnd = 16;

  unsigned ends() const noexcept { return bits_ / anEnd; }
  unsigned passes() const noexcept { return bits_ % anEnd; }

  std::uint8_t bits_ = 0;
};
