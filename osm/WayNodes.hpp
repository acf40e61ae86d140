// The nodes under ways.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <span>
#include <utility>
#include <vector>

#include "osm/IdNumbering.hpp"
#include "osm/records.hpp"
#include "support/lookup.hpp"

namespace OpenStreetMap {

/// Positions of the nodes that ways refer to, by consecutive numbers: from 0 on, in the ascending
/// order of the nodes' ids as unsigned numbers. A node that the file lacks has a number, too.
class WayNodes {
 public:
  using Number = IdNumbering::Number;
  static constexpr Number none = IdNumbering::none;

  struct Position {
    double latitude = std::numeric_limits<double>::quiet_NaN();  ///< degrees, -90 to 90
    double longitude = latitude;                                 ///< degrees, -180 to 180
  };

  WayNodes() = default;
  /// Of these nodes, all of them without a position yet. `references` are the numbers of the
  /// references of all ways, in the order of the ways in their table.
  WayNodes(IdNumbering ids, std::vector<Number> references)
      : ids_(std::move(ids)), positions_(ids_.size()), references_(std::move(references)) {}

  /// How many numbers there are.
  std::size_t size() const noexcept { return positions_.size(); }
  /// Whether the file has the node of this number.
  bool has(Number number) const noexcept { return !std::isnan(positions_[number].latitude); }
  Position const& operator[](Number number) const noexcept { return positions_[number]; }
  /// Sets the position of a node, unless it has one.
  void setPosition(Number number, Position const& position) noexcept {
    if (!has(number)) positions_[number] = position;
  }

  /// The numbers of a way's references. Throws std::out_of_range("_Map_base::at") for a way that is
  /// not of this selection.
  std::span<Number const> numbersOf(Way const& way) const {
    if (way.firstReference + way.nodeReferences.size() > references_.size()) {
      support::throwMissing();
    }
    return std::span(references_).subspan(way.firstReference, way.nodeReferences.size());
  }

  /// The position of the node with this id; null when no way refers to it, or the file lacks it.
  Position const* find(Id id) const noexcept {
    Number const number = finder()(id);
    return number != none && has(number) ? &positions_[number] : nullptr;
  }
  /// Finds the numbers of ids; `none` for an id that no way refers to.
  IdNumbering::Finder finder() const noexcept { return IdNumbering::Finder(ids_); }
  /// Calls `action(number, id)` for each node, in the order of their numbers.
  template <class Action>
  void forEach(Action const& action) const {
    Number number = 0;
    ids_.forEach([&](Id id) { action(number++, id); });
  }

 private:
  IdNumbering ids_;
  std::vector<Position> positions_;
  std::vector<Number> references_;
};

}  // namespace OpenStreetMap
