#include "graph/SuffixAutomaton.hpp"

#include <stdexcept>
#include <utility>

void SuffixAutomaton::append(char16_t unit) {
  if (states_.size() >= none - 2) throw std::length_error("a text too long for its index");
  auto const added = static_cast<State>(states_.size());
  states_.push_back({states_[last_].length + 1, root, {}});
  State state = last_;
  last_ = added;
  while (state != none && states_[state].next.try_emplace(unit, added).second) {
    state = states_[state].suffix;
  }
  if (state == none) return;
  // This suffix stood somewhere before, followed by the unit.
  State const before = states_[state].next.at(unit);
  bool const isLongest = states_[before].length == states_[state].length + 1;
  State const suffix = isLongest ? before : split(state, before, unit);
  states_[added].suffix = suffix;
}

// Of the parts that `longer` stands for, those that `state` and the unit make up now end in one
// place more than the others: they get a state of their own.
SuffixAutomaton::State SuffixAutomaton::split(State state, State longer, char16_t unit) {
  auto const shorter = static_cast<State>(states_.size());
  Node copy = states_[longer];
  copy.length = states_[state].length + 1;
  states_.push_back(std::move(copy));
  states_[longer].suffix = shorter;
  for (; state != none; state = states_[state].suffix) {
    State& next = states_[state].next.at(unit);
    if (next != longer) break;
    next = shorter;
  }
  return shorter;
}
