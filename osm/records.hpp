// The element records that the reader hands out. Everything that they point to belongs to the
// reader and stays where it is, unchanged, for the reader's life.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <utility>

#include "osm/ElementTable.hpp"
#include "osm/ElementType.hpp"
#include "osm/TagMap.hpp"
#include "support/ModelId.hpp"

namespace OpenStreetMap {

/// An OSM identifier: signed, 64 bits; nodes, ways and relations each have ids of their own.
using Id = std::int64_t;

/// The id under which the road network knows an OSM element: the same 64 bits, unsigned.
constexpr support::ModelId modelId(Id id) noexcept {
  return static_cast<support::ModelId>(id);
}
/// And back.
constexpr Id osmId(support::ModelId modelId) noexcept {
  return static_cast<Id>(modelId);
}

using Tags = TagMap;

/// The ranges of coordinates, in degrees to both sides of 0.
inline constexpr double maxLatitude = 90.0;
inline constexpr double maxLongitude = 180.0;

struct Way {
  Id id;
  Tags tags;
  std::span<Id const> nodeReferences;  ///< in file order; ids may repeat
  /// How many references the ways before it in its table have, where only a selection is kept.
  std::size_t firstReference = 0;
};

struct Node {
  Id id;
  Tags tags;
  double first;   ///< latitude in degrees, as precise as the file gives it
  double second;  ///< longitude in degrees
};

struct Member {
  ElementType type;
  Id reference;
  std::u16string const* role;
};

struct Relation {
  Id id;
  Tags tags;
  std::span<Member const> members;  ///< in file order
};

/// A lowest and a highest value in degrees, both NaN while unknown. Longitudes that cross the
/// antimeridian go from the first eastwards to the second, which is less.
using Limits = std::pair<double, double>;
inline constexpr Limits unknownLimits{std::numeric_limits<double>::quiet_NaN(),
                                      std::numeric_limits<double>::quiet_NaN()};

/// How many elements of each kind a file has, each id counted once.
struct ElementCounts {
  std::size_t nodes = 0;
  std::size_t ways = 0;
  std::size_t relations = 0;
};

using NodeTable = ElementTable<Node>;
using WayTable = ElementTable<Way>;
using RelationTable = ElementTable<Relation>;

}  // namespace OpenStreetMap
