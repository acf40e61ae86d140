// Columns of numbers and texts, small enough to stand in a page.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "support/TextHash.hpp"

/// Whole numbers of 64 bits. Kept are the differences from each to the next, with the sign as the
/// lowest bit, and of these first all lowest bytes, then all second ones, and so on: what
/// compresses is then apart from what does not, and nothing takes more than it needs.
class PageIntegers {
 public:
  void add(std::int64_t value) {
    // Without overflow: the difference of any two numbers is right modulo 2^64.
    auto const difference = static_cast<std::int64_t>(static_cast<std::uint64_t>(value) -
                                                      static_cast<std::uint64_t>(previous_));
    auto const sign = static_cast<std::uint64_t>(difference >> 63);
    addBytes((static_cast<std::uint64_t>(difference) << 1) ^ sign);
    previous_ = value;
  }
  /// The next difference is from this one.
  void continueFrom(std::int64_t value) noexcept { previous_ = value; }

  std::size_t size() const noexcept { return size_; }
  std::size_t bytesPerValue() const noexcept { return planes_.size(); }
  std::string bytes() const;

 private:
  void addBytes(std::uint64_t value);

  std::int64_t previous_ = 0;
  std::size_t size_ = 0;
  std::vector<std::string> planes_;
};

/// Numbers of a few decimals: whole numbers of 1e-7, which coordinates in OSM are, and beside them,
/// bit for bit, those numbers that are none.
class PageDecimals {
 public:
  static constexpr double scale = 1e7;

  void add(double value);
  /// The next difference is from this one.
  void continueFrom(double value) noexcept { scaled_.continueFrom(nearest(value)); }

  PageIntegers const& scaled() const noexcept { return scaled_; }
  PageIntegers const& exceptionPlaces() const noexcept { return exceptionPlaces_; }
  PageIntegers const& exceptionBits() const noexcept { return exceptionBits_; }

 private:
  // Below 1e8 a page's script, whose numbers are doubles, has both a difference and its sign
  // exactly.
  static std::int64_t nearest(double value) noexcept {
    return std::abs(value) < 1e8 ? std::llround(value * scale) : 0;
  }

  PageIntegers scaled_;
  PageIntegers exceptionPlaces_;
  PageIntegers exceptionBits_;
};

/// Texts, of which many are the same: the different ones, and which of them each is.
class PageTexts {
 public:
  /// Without U+0000.
  void add(std::string_view text);

  PageIntegers const& numbers() const noexcept { return numbers_; }
  /// In the order in which they came, with U+0000 behind each.
  std::string const& texts() const noexcept { return texts_; }

 private:
  PageIntegers numbers_;
  std::string texts_;
  std::unordered_map<std::string, std::int64_t, support::TextHash> known_;
};

/// Lists of whole numbers.
struct PageLists {
  PageIntegers sizes;
  PageIntegers values;

  template <class Values>
  void add(Values const& list) {
    sizes.add(static_cast<std::int64_t>(list.size()));
    for (auto const value : list) values.add(static_cast<std::int64_t>(value));
  }
};
