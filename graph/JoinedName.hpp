// The name of a road that is joined from others.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "support/IdMap.hpp"

/// Grows by the names of roads that are joined to it. Where thousands are, searching the name and
/// copying it would take time with their square; so a long name has an index of what it holds, and
/// of two names the shorter is put to the longer.
class JoinedName {
 public:
  explicit JoinedName(std::u16string_view name) : units_(name.begin(), name.end()) {}

  /// Puts a hyphen and `other` behind this name, unless `other` occurs in it somewhere. An empty
  /// name always does. Leaves `other` with any value.
  void join(JoinedName& other);

  std::u16string text() const { return {units_.begin(), units_.end()}; }

 private:
  // Four code units in a row.
  using Gram = std::uint64_t;
  static constexpr std::size_t gramSize = 4;

  bool contains(std::deque<char16_t> const& text) const;
  bool standsAt(std::size_t at, std::deque<char16_t> const& text) const;
  void append(std::deque<char16_t> const& text);
  void prepend(std::deque<char16_t> const& text);
  /// Takes the grams that begin at `first` up to `last` into the index of a long name.
  void index(std::size_t first, std::size_t last);

  std::deque<char16_t> units_;
  bool indexed_ = false;
  support::ModelIdMap<std::vector<std::int64_t>> places_;  // of each gram, counted from origin_
  std::size_t origin_ = 0;  // how many code units were put in front since the index was made
};
