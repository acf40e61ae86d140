// The name of a road that is joined from others.
#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <utility>

#include "graph/SuffixAutomaton.hpp"
#include "model/zero/SharedText.hpp"

/// Grows by the names of roads that are joined to it. Where thousands are, searching the name and
/// copying it would take time with their square. So of two names the shorter is put to the longer,
/// on either side, and a long name has an index of its parts: in all, n units take time in
/// proportion to n log n.
class JoinedName {
 public:
  explicit JoinedName(kb::zero::SharedText name) noexcept : whole_(std::move(name)) {}

  /// Puts a hyphen and `other` behind this name, unless `other` occurs in it somewhere. An empty
  /// name always does. Leaves `other` with any value.
  void join(JoinedName& other);

  kb::zero::SharedText text() const;

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

  void makeUnits();

  kb::zero::SharedText whole_;  // of a short name
  std::optional<Units> units_;  // of any other
  std::optional<Index> index_;  // of the units of a long name
};
