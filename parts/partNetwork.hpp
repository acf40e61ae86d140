// The network of a part, and the heights that depend on others.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "export/NetworkColumns.hpp"
#include "parts/PartImport.hpp"

/// What the ends of roads bring to their Nodes, by the file order of the nodes, then in the order
/// of the Nodes' lists: roads that end there before those that start there, of each the ends that
/// never moved by road id, then the others as they came.
struct RoadEnds {
  std::vector<OpenStreetMap::Id> nodes;
  std::vector<std::uint8_t> lists;   ///< 0 and 1: incoming, unmoved and moved; 2 and 3: outgoing
  std::vector<std::uint64_t> ranks;  ///< within these
  std::vector<double> elevations;    ///< of the roads, in metres
};

/// The columns of `networkColumns`, with the roads' ids in the whole network, but without
/// elevations and rows of Nodes.
struct PartNetwork {
  NetworkColumns::Roads roads;
  std::vector<double> elevations;  ///< of each road
  RoadEnds ends;
};

PartNetwork partNetwork(ImportOptions const& options, std::span<WayBatch const> batches);

/// The restrictions of some relations. The batches hold all roads of the ways that they name.
RestrictionColumns partRestrictions(ImportOptions const& options, std::span<WayBatch const> batches,
                                    RelationBatch const& relations);

struct NodeElevations {
  std::vector<OpenStreetMap::Id> nodes;
  std::vector<double> elevations;
};

/// The mean of each Node's roads: `ends` of several parts, one behind the other. In file order.
NodeElevations meanElevations(RoadEnds const& ends);

/// The elevations along the roads.
void setElevations(std::span<std::int64_t const> offsets, std::span<NetworkColumns::Point> points,
                   std::span<double const> atStart, std::span<double const> onRoad,
                   std::span<double const> atEnd);
