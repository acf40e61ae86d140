// A place in the map, or in what was made of it, that a careful person would look at.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "osm/WayNodes.hpp"
#include "osm/records.hpp"
#include "support/ModelId.hpp"

/// high: wrong routes, or a break in the network; medium: wrong in places, or wrong heights; low:
/// for whoever needs it exactly.
enum class Severity : std::uint8_t { high, medium, low };
std::string_view nameOf(Severity severity);

struct Finding {
  /// What matters most comes first. docs/report.md says what each of them means.
  enum class Kind : std::uint8_t {
    droppedDirections,
    traps,
    crossings,
    islands,
    impliedOneway,
    unknownOneway,
    unmappedRestrictions,
    sharedNodes,
    oddLayers,
    levelBridges,
    lowClearance,
    areas,
    steep,
    differentNames,
    nameAndNone,
  };
  static constexpr std::size_t kinds = 15;

  using Position = OpenStreetMap::WayNodes::Position;
  /// A part of a road's centre line; views into the road.
  struct Stretch {
    std::span<double const> latitudes;
    std::span<double const> longitudes;
  };
  /// What is known of this kind alone: a name and a value.
  using Detail = std::pair<std::string_view, std::variant<std::int64_t, double, std::string_view>>;

  Kind kind;
  Severity severity;
  std::vector<OpenStreetMap::Way const*> ways = {};  ///< ten at most
  std::vector<OpenStreetMap::Id> absentWays = {};    ///< that the file lacks, or no roads; the same
  std::vector<OpenStreetMap::Id> nodes = {};         ///< ten at most
  std::vector<support::ModelId> roads = {};          ///< that it is about; none where they are many
  std::vector<Detail> details = {};
  /// Where it is: points, or else stretches of roads, or, without any of these, the lines of
  /// `ways`. Nowhere in the file, if there are none.
  std::vector<Position> points = {};
  std::vector<Stretch> stretches = {};
  /// In the vertical where two roads cross, else along the ground. NaN stands for the length of the
  /// lines; points have none.
  double metres = std::numeric_limits<double>::quiet_NaN();
};

/// What all findings of a kind have in common.
struct FindingKind {
  std::string_view name;
  std::string_view key;  ///< of the tag of its ways that says most
  bool isAboutOneWay;    ///< one way and nothing else
};
FindingKind const& describe(Finding::Kind kind);
