#include "parts/selectRoads.hpp"

#include <algorithm>

#include "graph/createNodes.hpp"
#include "parts/PartImport.hpp"
#include "parts/fileOrder.hpp"
#include "support/lookup.hpp"
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
    selected.uses.push_back(uses[number].bits());
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

void NodeUses::add(std::span<Id const> nodes, std::span<std::uint8_t const> uses) {
  auto const rows = findRows(nodes_, nodes);
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (rows[i] < 0) support::throwMissing();
    auto& sum = uses_[static_cast<std::size_t>(rows[i])];
    NodeUse use(sum);
    use += NodeUse(uses[i]);
    sum = use.bits();
  }
}

std::vector<std::uint8_t> NodeUses::places(std::span<Id const> fixed) const {
  std::vector<std::uint8_t> places(nodes_.size());
  for (std::size_t row = 0; row < places.size(); ++row) {
    NodeUse const use(uses_[row]);
    if (use.isJunction()) places[row] |= NodePlace::junction;
    if (use.isContinuation()) places[row] |= NodePlace::joinable;
  }
  for (std::int64_t const row : findRows(nodes_, fixed)) {
    if (row >= 0) places[static_cast<std::size_t>(row)] &= NodePlace::junction;
  }
  return places;
}
