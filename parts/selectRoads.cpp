#include "parts/selectRoads.hpp"

#include <algorithm>

#include "graph/createNodes.hpp"
#include "parts/PartImport.hpp"
#include "parts/fileOrder.hpp"
#include "ways/selectHighwayWays.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::Way;

SelectedRoads selectRoads(WayBatch const& batch) {
  PartImport part({}, std::span(&batch, 1));
  RoadNetworkImporter& importer = part.importer;
  importer.selectedWays = selectHighwayWays(importer.reader);
  SelectedRoads selected;
  WayBatchMaker maker;
  for (Way const* const way : importer.selectedWays) {
    maker.add(way->id, way->tags, way->nodeReferences);
  }
  WayBatch& roads = selected.roads = maker.take();
  auto const& nodes = importer.reader.wayNodes;
  auto const uses = countNodeUses(importer);
  auto find = nodes.finder();
  for (Id const id : roads.nodes) {
    auto const number = find(id);
    roads.latitudes.push_back(nodes[number].latitude);
    roads.longitudes.push_back(nodes[number].longitude);
  }
  for (Id const id : batch.nodes) {
    NodeUse const use = uses[find(id)];
    selected.uses.push_back(use.bits());
    selected.isUsed.push_back(use.bits() != 0);
  }
  for (Way const& way : importer.reader.ways) {
    auto const numbers = nodes.numbersOf(way);
    bool const isWhole = std::all_of(numbers.begin(), numbers.end(),
                                     [&](auto const number) { return nodes.has(number); });
    if (!isWhole) ++selected.missingNodes;
  }
  return selected;
}

std::vector<std::int64_t> findRows(std::span<Id const> sorted, std::span<Id const> ids) {
  std::vector<std::int64_t> rows;
  rows.reserve(ids.size());
  auto from = sorted.begin();
  for (std::size_t i = 0; i < ids.size(); ++i) {
    bool const isBehind = i > 0 && fileOrder(ids[i]) >= fileOrder(ids[i - 1]);
    from = std::lower_bound(isBehind ? from : sorted.begin(), sorted.end(), ids[i], InFileOrder());
    rows.push_back(from != sorted.end() && *from == ids[i] ? from - sorted.begin() : -1);
  }
  return rows;
}

std::vector<std::uint8_t> findPlaces(std::size_t count, std::span<PartUses const> parts,
                                     std::span<std::int64_t const> fixed) {
  std::vector<NodeUse> sums(count);
  for (PartUses const& part : parts) {
    for (std::size_t i = 0; i < part.rows.size(); ++i) {
      sums.at(static_cast<std::size_t>(part.rows[i])) += NodeUse(part.uses[i]);
    }
  }
  std::vector<std::uint8_t> places(count);
  for (std::size_t row = 0; row < count; ++row) {
    if (sums[row].isJunction()) places[row] |= NodePlace::junction;
    if (sums[row].isContinuation()) places[row] |= NodePlace::joinable;
  }
  for (std::int64_t const row : fixed) {
    if (row >= 0) places.at(static_cast<std::size_t>(row)) &= NodePlace::junction;
  }
  return places;
}
