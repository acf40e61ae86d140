// What the parts of a file hold.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "importer/ImportOptions.hpp"
#include "osm/records.hpp"
#include "parts/FilePart.hpp"
#include "parts/RelationBatch.hpp"
#include "parts/WayBatch.hpp"

/// The positions of nodes.
struct NodePositions {
  std::vector<double> latitudes;  ///< degrees; NaN for a node that the part lacks
  std::vector<double> longitudes;
  std::size_t count = 0;  ///< of all nodes of the part
  /// Of the bounds if the part has any, else of its nodes.
  OpenStreetMap::Limits latitudeLimits;
  OpenStreetMap::Limits longitudeLimits;
  bool hasBounds = false;
};

/// Of these nodes, which are in file order. Throws ReadError, as the others do.
NodePositions decodeNodes(FilePart const& part, std::span<OpenStreetMap::Id const> wanted);

struct DecodedWays {
  WayBatch roads;  ///< the ways that are roads by their tags
  std::size_t count = 0;
  std::size_t highways = 0;
  /// The nodes at both ends of those with the tag "highway" that were asked for.
  std::vector<OpenStreetMap::Id> ends;
};

/// `viaWays`, in file order, are those whose ends are wanted.
DecodedWays decodeWays(FilePart const& part, ImportOptions const& options,
                       std::span<OpenStreetMap::Id const> viaWays);

struct DecodedRelations {
  RelationBatchMaker restrictions;
  std::size_t count = 0;
};

DecodedRelations decodeRelations(FilePart const& part, ImportOptions const& options);
