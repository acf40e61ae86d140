// The suffix automaton of a growing text.
#pragma once

#include <boost/container/flat_map.hpp>
#include <cstddef>
#include <cstdint>
#include <vector>

/// Knows all parts of a text: the directed acyclic word graph of A. Blumer, J. Blumer, Ehrenfeucht,
/// Haussler, Chen and Seiferas (1985). A text of n units has at most 2 n states and 3 n
/// transitions; it is built in time proportional to n, and asked in time proportional to the part.
class SuffixAutomaton {
 public:
  /// Adds a unit at the end of the text. Throws std::length_error beyond some two thousand million.
  void append(char16_t unit);

  /// Whether the units from `first` up to `last` stand in the text, one after the other.
  template <class Iterator>
  bool contains(Iterator first, Iterator last) const {
    State state = root;
    for (; first != last; ++first) {
      auto const& next = states_[state].next;
      auto const found = next.find(*first);
      if (found == next.end()) return false;
      state = found->second;
    }
    return true;
  }

 private:
  using State = std::uint32_t;
  static constexpr State root = 0;
  static constexpr State none = ~State{0};

  // Stands for the parts of the text that end at the same places; the longest has `length` units.
  struct Node {
    std::uint32_t length = 0;
    State suffix = none;  // the state of the longest of their suffixes that ends in more places
    boost::container::flat_map<char16_t, State> next{};
  };

  State split(State state, State longer, char16_t unit);

  std::vector<Node> states_{Node{}};
  State last_ = root;  // the state of the whole text
};
