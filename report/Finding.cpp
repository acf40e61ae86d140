#include "report/Finding.hpp"

#include <array>

std::string_view nameOf(Severity severity) {
  constexpr std::array<std::string_view, 3> names{"high", "medium", "low"};
  return names[static_cast<std::size_t>(severity)];
}

FindingKind const& describe(Finding::Kind kind) {
  static constexpr std::array<FindingKind, Finding::kinds> table{{
      {"droppedDirections", "oneway", false},
      {"traps", "oneway", false},
      {"crossings", "layer", false},
      {"islands", "highway", false},
      {"impliedOneway", "highway", true},
      {"unknownOneway", "oneway", true},
      {"unmappedRestrictions", "highway", false},
      {"sharedNodes", "layer", false},
      {"oddLayers", "layer", true},
      {"levelBridges", "highway", true},
      {"lowClearance", "layer", false},
      {"areas", "highway", true},
      {"steep", "layer", false},
      {"differentNames", "name", false},
      {"nameAndNone", "name", false},
  }};
  return table[static_cast<std::size_t>(kind)];
}
