// The name of a road that is joined from others.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "graph/SuffixAutomaton.hpp"

/// Grows by the names of roads that are joined to it. Where thousands are, searching the name and
/// copying it would take time with their square. So of two names the shorter is put to the longer,
/// on either side, and a long name has an index of its parts: in all, n units take time in
/// proportion to n log n.
class JoinedName {
 public:
  explicit JoinedName(std::u16string_view name) : units_(name.begin(), name.end()) {}

  /// Puts a hyphen and `other` behind this name, unless `other` occurs in it somewhere. An empty
  /// name always does. Leaves `other` with any value.
  void join(JoinedName& other);

  std::u16string text() const { return {units_.begin(), units_.end()}; }

 private:
  using Units = std::deque<char16_t>;

  // The parts of a name that has grown at both ends lie on one side of a seam or across it.
  struct Index {
    SuffixAutomaton behind;  // of the units from the seam on
    SuffixAutomaton before;  // of those before the seam, from back to front
    std::size_t seam;        // how many there are before it
  };

  bool contains(Units const& text) const;
  bool standsAcrossSeam(Units const& text) const;
  void makeIndexIfLong();
  void append(Units const& text);
  void prepend(Units const& text);

  Units units_;
  std::optional<Index> index_;  // of a long name
};
