// Nodes and roads as the rows of tables, which is how the exchange formats see a network.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "export/NumberText.hpp"
#include "importer/RoadPieces.hpp"
#include "model/roadnetwork/DirectionOfTravel.hpp"
#include "model/roadnetwork/Node.hpp"
#include "model/roadnetwork/Road.hpp"
#include "osm/records.hpp"
#include "support/ModelId.hpp"

class RoadNetworkImporter;

/// As UTF-8 without U+0000, which no exchange format can hold.
std::string exchangeable(std::u16string_view text);

/// Ids with ";" between them, as OSM tags list values.
template <class Ids>
std::string idList(Ids const& ids) {
  std::string text;
  for (auto const id : ids) {
    if (!text.empty()) text += ';';
    text += NumberText(id);
  }
  return text;
}

struct NodeRow {
  OpenStreetMap::Id id;  ///< the OSM node's, with its sign
  double longitude;      ///< degrees, WGS 84
  double latitude;
  double elevation;  ///< metres above the ground; may be NaN or infinite
};

/// What is there of a road without computing or converting anything.
struct RoadParts {
  support::ModelId id;
  velora::roadnetwork::DirectionOfTravel direction;
  OpenStreetMap::Id startNode;
  OpenStreetMap::Id endNode;
  std::vector<OpenStreetMap::Id> wayIds;  ///< see wayIdsOf
  std::vector<RoadPiece> pieces;          ///< along the road, at least one
  /// The centre line from the start to the end node, as many of each; views into the road.
  std::span<double const> longitudes;
  std::span<double const> latitudes;
  std::span<double const> elevations;
};

/// Of a road of the importer, which must have run. They hold as long as the road.
RoadParts roadParts(velora::roadnetwork::Road const& road, RoadNetworkImporter const& importer);

/// The different values of a tag in their order along a road; equal ones are one string.
std::vector<std::u16string const*> tagValues(std::u16string_view key,
                                             std::span<RoadPiece const> pieces);
/// As OSM tags list values: with ";" between them. UTF-8 without U+0000, empty for none.
std::string joinedValues(std::span<std::u16string const* const> values);

struct RoadRow : RoadParts {
  std::string name;  ///< this and the other texts: see joinedValues
  std::string highway;
  std::vector<std::string> tags;  ///< of the exported keys, in their order
  double length;                  ///< metres, see roadLength
  bool hasElevations;             ///< whether all of them are finite

  /// The way ids with ";" between them, as OSM tags list values.
  std::string wayIdText() const { return idList(wayIds); }
};

/// The OSM ways that the road was made of, ascending, each once.
std::vector<OpenStreetMap::Id> wayIdsOf(velora::roadnetwork::Road const& road,
                                        RoadNetworkImporter const& importer);

NodeRow nodeRow(velora::roadnetwork::Node const& node);

/// Makes the rows of the roads of an importer, which must have run.
class RoadRows {
 public:
  explicit RoadRows(RoadNetworkImporter const& importer);

  /// The row holds as long as the road.
  RoadRow operator()(velora::roadnetwork::Road const& road) const;

 private:
  RoadNetworkImporter const& importer_;
  std::vector<std::u16string> keys_;
};

/// A way to travel a road, for formats that know directed edges alone.
struct DirectedEdge {
  OpenStreetMap::Id from;
  OpenStreetMap::Id to;
  bool isBackward;  ///< from the road's end to its start
  /// From `from` to `to` as well-known text (ISO 19125 with Z): LINESTRING Z (longitude latitude
  /// elevation, ...), or LINESTRING (longitude latitude, ...) where elevations are not all finite.
  std::string geometry;
};

/// One for a one-way road, two for any other: start to end, and end to start.
std::vector<DirectedEdge> directedEdges(RoadRow const& road);
