#include "export/NetworkColumns.hpp"

#include <algorithm>
#include <array>
#include <span>

#include "export/NetworkRows.hpp"
#include "export/NetworkWalk.hpp"
#include "export/RestrictionRows.hpp"
#include "export/tagColumns.hpp"
#include "importer/RoadNetworkImporter.hpp"
#include "report/lineLength.hpp"
#include "support/IdMap.hpp"
#include "support/ustring.hpp"

using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

struct TagColumn {
  std::u16string key;
  std::string name;
  TextColumn texts;
};

std::vector<TagColumn> tagColumnsOf(RoadNetworkImporter const& importer) {
  std::vector<TagColumn> columns{{u"name", "name", {}}, {u"highway", "highway", {}}};
  std::vector<std::string> const& keys = importer.options.tags;
  std::vector<std::string> const names = tagColumns(keys);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    columns.push_back({support::to_ustring(keys[i]), names[i], {}});
  }
  return columns;
}

std::uint8_t reversedNumber(std::vector<RoadPiece> const& pieces) {
  auto const isReversed = [](RoadPiece const& piece) { return piece.isReversed; };
  if (std::none_of(pieces.begin(), pieces.end(), isReversed)) return 0;
  return std::all_of(pieces.begin(), pieces.end(), isReversed) ? 1 : 2;
}

// Of all centre lines: two roads that were cut from one way both have the node between them.
std::size_t mostPoints(RoadNetworkImporter const& importer) {
  std::size_t count = importer.roadNetwork->getRoads().size();
  for (auto const* const way : importer.selectedWays) count += way->nodeReferences.size();
  return count;
}

template <class... Columns>
void reserve(std::size_t rows, Columns&... columns) {
  (columns.reserve(rows), ...);
}

}  // namespace

NetworkColumns networkColumns(RoadNetworkImporter const& importer) {
  NetworkColumns columns;
  NetworkWalk walk(importer, support::Stage::makingColumns);

  auto& nodes = columns.nodes;
  support::IdMap<std::int64_t> rows;  // of nodes
  reserve(importer.roadNetwork->getNodes().size(), rows, nodes.id, nodes.longitude, nodes.latitude,
          nodes.elevation);
  walk.forEachNode([&](Node const& node) {
    NodeRow const row = nodeRow(node);
    rows.emplace(row.id, static_cast<std::int64_t>(nodes.id.size()));
    nodes.id.push_back(row.id);
    nodes.longitude.push_back(row.longitude);
    nodes.latitude.push_back(row.latitude);
    nodes.elevation.push_back(row.elevation);
  });

  auto& roads = columns.roads;
  std::vector<TagColumn> tags = tagColumnsOf(importer);
  std::size_t const count = importer.roadNetwork->getRoads().size();
  reserve(count, roads.id, roads.startNode, roads.endNode, roads.start, roads.end, roads.direction,
          roads.reversed, roads.weight, roads.centreLine.offsets, roads.wayIds.offsets);
  for (TagColumn& tag : tags) tag.texts.reserve(count);
  roads.centreLine.values.reserve(mostPoints(importer));
  OpenStreetMap::Way const* wayBefore = nullptr;
  walk.forEachRoad([&](Road const& road) {
    RoadParts const parts = roadParts(road, importer);
    roads.id.push_back(static_cast<std::int64_t>(parts.id));
    roads.startNode.push_back(parts.startNode);
    roads.endNode.push_back(parts.endNode);
    roads.direction.push_back(static_cast<std::uint8_t>(parts.direction));
    roads.reversed.push_back(reversedNumber(parts.pieces));
    roads.weight.push_back(road->getWeight());
    for (std::size_t i = 0; i < parts.longitudes.size(); ++i) {
      roads.centreLine.values.push_back(
          {parts.longitudes[i], parts.latitudes[i], parts.elevations[i]});
    }
    roads.centreLine.endRow();
    roads.wayIds.values.insert(roads.wayIds.values.end(), parts.wayIds.begin(), parts.wayIds.end());
    roads.wayIds.endRow();
    // Roads that follow one another are mostly of one way.
    OpenStreetMap::Way const* const way =
        parts.pieces.size() == 1 ? parts.pieces.front().way : nullptr;
    bool const isSame = way != nullptr && way == wayBefore;
    wayBefore = way;
    for (TagColumn& tag : tags) {
      isSame ? tag.texts.repeat() : tag.texts.add(tagValues(tag.key, parts.pieces));
    }
  });
  for (TagColumn& tag : tags) roads.texts.emplace_back(tag.name, tag.texts.take());
  // Apart from the rest, for the processor to look up many at a time.
  for (auto const id : roads.startNode) roads.start.push_back(rows.at(id));
  for (auto const id : roads.endNode) roads.end.push_back(rows.at(id));
  return columns;
}

std::vector<double> roadLengths(std::span<std::int64_t const> offsets,
                                std::span<NetworkColumns::Point const> points) {
  std::vector<double> lengths;
  lengths.reserve(offsets.size() - 1);
  std::vector<double> longitudes;
  std::vector<double> latitudes;
  for (std::size_t road = 0; road + 1 < offsets.size(); ++road) {
    longitudes.clear();
    latitudes.clear();
    for (auto i = offsets[road]; i < offsets[road + 1]; ++i) {
      auto const& point = points[static_cast<std::size_t>(i)];
      longitudes.push_back(point.longitude);
      latitudes.push_back(point.latitude);
    }
    lengths.push_back(lineLength(latitudes, longitudes));
  }
  return lengths;
}

RestrictionColumns restrictionColumns(RoadNetworkImporter const& importer) {
  RestrictionColumns columns;
  std::array<TextColumn, 4> texts;
  auto const addList = [](auto& lists, auto const& values) {
    lists.values.insert(lists.values.end(), values.begin(), values.end());
    lists.endRow();
  };
  forEachRestriction(importer, [&](RestrictionRow const& row) {
    auto const& restriction = row.restriction;
    columns.relationId.push_back(restriction.relation);
    columns.fromRoad.push_back(static_cast<std::int64_t>(restriction.from.road->getID()));
    columns.toRoad.push_back(static_cast<std::int64_t>(restriction.to.road->getID()));
    columns.fromDirection.push_back(
        static_cast<std::uint8_t>(directionNumber(row.fromIsForward())));
    columns.toDirection.push_back(static_cast<std::uint8_t>(directionNumber(row.toIsForward())));
    addList(columns.viaNodes, restriction.viaNodes);
    addList(columns.viaRoads, restriction.viaRoads);
    texts[0].add(row.kind);
    texts[1].add(row.vehicles);
    texts[2].add(row.condition);
    texts[3].add(row.except);
  });
  columns.kind = texts[0].take();
  columns.vehicles = texts[1].take();
  columns.condition = texts[2].take();
  columns.except = texts[3].take();
  return columns;
}
