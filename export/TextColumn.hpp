// A column of texts.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "support/TextHash.hpp"

/// Texts, each different one kept once: a row's text is number `codes[row]` of them, and number i
/// is the bytes from `offsets[i]` to `offsets[i + 1]`, UTF-8 without U+0000.
struct Texts {
  static constexpr std::int32_t none = -1;

  std::vector<std::int32_t> codes;  ///< `none` for a row without a text, or with an empty one
  std::vector<std::int64_t> offsets{0};
  std::vector<char> bytes;
};

/// Fills one, row by row.
class TextColumn {
 public:
  void reserve(std::size_t rows) { texts_.codes.reserve(rows); }
  /// Both throw std::length_error for more different texts than a code can count.
  void add(std::string const& text) { texts_.codes.push_back(codeOf(text)); }
  /// The values of a tag along a road, see joinedValues.
  void add(std::span<std::u16string const* const> values);
  /// The same as in the row before.
  void repeat() { texts_.codes.push_back(texts_.codes.back()); }

  Texts take() { return std::move(texts_); }

 private:
  std::int32_t codeOf(std::string const& text);

  Texts texts_;
  std::unordered_map<std::string, std::int32_t, support::TextHash> codes_;
  // A shorter way to the same: equal values of a file are one string.
  std::unordered_map<std::u16string const*, std::int32_t> codesOfValues_;
};
