// A finished network as columns, for those who work with arrays.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "export/TextColumn.hpp"
#include "osm/records.hpp"

class RoadNetworkImporter;

/// A list of values a row: those of row i stand from `offsets[i]` to `offsets[i + 1]`.
template <class Value>
struct Lists {
  std::vector<std::int64_t> offsets{0};
  std::vector<Value> values;

  void endRow() { offsets.push_back(static_cast<std::int64_t>(values.size())); }
};

/// Nodes and roads by ascending id, as in every output, with the values of the exchange formats
/// (NetworkRows.hpp). Has nothing to do with the network any more.
struct NetworkColumns {
  using Id = OpenStreetMap::Id;
  struct Point {
    double longitude;  ///< degrees, WGS 84
    double latitude;
    double elevation;  ///< metres above the ground; may be NaN or infinite
  };

  struct Nodes {
    std::vector<Id> id;
    std::vector<double> longitude;
    std::vector<double> latitude;
    std::vector<double> elevation;
  } nodes;

  struct Roads {
    std::vector<std::int64_t> id;
    std::vector<Id> startNode;
    std::vector<Id> endNode;
    std::vector<std::int64_t> start;  ///< the rows of these nodes
    std::vector<std::int64_t> end;
    std::vector<std::uint8_t> direction;
    /// 0 where the road runs as all of its ways do, 1 where it runs against them, 2 for some of
    /// each.
    std::vector<std::uint8_t> reversed;
    std::vector<double> weight;
    Lists<Point> centreLine;  ///< from the start to the end node
    Lists<Id> wayIds;
    /// "name", "highway" and the exported tags under the names of their columns.
    std::vector<std::pair<std::string, Texts>> texts;
  } roads;
};

/// Of an importer which must have run.
NetworkColumns networkColumns(RoadNetworkImporter const& importer);

/// The lengths of the roads in metres, see lineLength, from `offsets` and `values` of their lists.
std::vector<double> roadLengths(std::span<std::int64_t const> offsets,
                                std::span<NetworkColumns::Point const> points);

/// Turn restrictions, in the order of every output.
struct RestrictionColumns {
  std::vector<OpenStreetMap::Id> relationId;
  std::vector<std::int64_t> fromRoad;
  std::vector<std::int64_t> toRoad;
  std::vector<std::uint8_t> fromDirection;
  std::vector<std::uint8_t> toDirection;
  Lists<OpenStreetMap::Id> viaNodes;
  Lists<std::int64_t> viaRoads;
  Texts kind;
  Texts vehicles;
  Texts condition;
  Texts except;
};

/// Of an importer which must have run.
RestrictionColumns restrictionColumns(RoadNetworkImporter const& importer);
