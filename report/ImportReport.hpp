// What became of each way, and what a careful person would look at.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "importer/RoadNetworkImporter.hpp"
#include "support/ModelId.hpp"

/// Read from a finished import, whose records it points to. Every way with a "highway" tag is
/// either imported or in one of the three lists of ways that are not.
struct ImportReport {
  using Way = OpenStreetMap::Way;
  using Id = OpenStreetMap::Id;

  struct MissingNodes {
    Way const* way;
    std::size_t count;      ///< how many references the file has no node for
    std::vector<Id> first;  ///< the first of them, ten at most
  };
  /// Two ways that were joined at a node into one road.
  struct Join {
    support::ModelId road;
    Way const* one;
    Way const* other;
    Id node;
  };
  /// A node in the middle of two ways on different layers, which become connected.
  struct SharedNode {
    Id node;
    Way const* one;
    Way const* other;
  };

  std::size_t highwayWays = 0;
  std::size_t importedWays = 0;

  std::vector<Way const*> notARoad;  ///< the value of "highway" is not that of a road
  std::vector<MissingNodes> missingNodes;
  std::vector<Way const*> fewerThanTwoNodes;

  /// Roundabouts and motorways without a "oneway" tag: imported as two-way
  /// (https://wiki.openstreetmap.org/wiki/Key:oneway says that these imply one).
  std::vector<Way const*> impliedOneway;
  /// Values of "oneway" other than yes, 1, -1, no, 0 and false: imported as two-way.
  std::vector<Way const*> unknownOneway;
  std::vector<Join> droppedDirections;  ///< joins of different directions of travel
  std::vector<Join> differentNames;     ///< joins of different names, or of a name and none
  std::vector<SharedNode> sharedNodes;
  /// Bridges and tunnels without a "layer" tag: at the height of the ground.
  std::vector<Way const*> levelBridges;
  /// Layers that are not numbers, which count as 0, or lie beyond -5 to 5.
  std::vector<Way const*> oddLayers;

  std::size_t notImported() const {
    return notARoad.size() + missingNodes.size() + fewerThanTwoNodes.size();
  }
  std::size_t toCheck() const {
    return impliedOneway.size() + unknownOneway.size() + droppedDirections.size() +
           differentNames.size() + sharedNodes.size() + levelBridges.size() + oddLayers.size();
  }
};

/// The lists are by ascending id of the way, or of the road and the node.
ImportReport reportOn(RoadNetworkImporter const& importer);
