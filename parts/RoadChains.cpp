#include "parts/RoadChains.hpp"

#include <algorithm>
#include <limits>
#include <numeric>
#include <stdexcept>

#include "parts/PartImport.hpp"

using OpenStreetMap::Id;

namespace {

// Sets of numbers, each known by its smallest member.
class Sets {
 public:
  using Number = std::uint32_t;

  explicit Sets(std::size_t size) : parents_(size) {
    if (size > std::numeric_limits<Number>::max()) {
      throw std::length_error("more roads than can be joined in one place");
    }
    std::iota(parents_.begin(), parents_.end(), Number{0});
  }
  Number smallest(Number member) {
    while (parents_[member] != member) member = parents_[member] = parents_[parents_[member]];
    return member;
  }
  void unite(Number a, Number b) {
    a = smallest(a);
    b = smallest(b);
    parents_[std::max(a, b)] = std::min(a, b);
  }

 private:
  std::vector<Number> parents_;
};

// Calls `action(first row, last row)` of the nodes of each piece of a way.
template <class Action>
void forEachPiece(WayBatch const& batch, std::size_t way, Action const& action) {
  auto const rows = batch.referencesOf(way);
  WayBatch::Row start = rows.front();
  for (WayBatch::Row const row : rows.subspan(1)) {
    if ((batch.places[row] & NodePlace::junction) == 0) continue;
    action(start, row);
    start = row;
  }
}

}  // namespace

CutWays cutWays(WayBatch const& batch) {
  constexpr std::uint32_t none = std::numeric_limits<std::uint32_t>::max();
  CutWays cut;
  std::size_t roads = 0;
  for (std::size_t way = 0; way < batch.size(); ++way) {
    roads += countPieces(batch, way);
    cut.roadEnds.push_back(static_cast<std::uint32_t>(roads));
    if (batch.ids[way] < 0) cut.negative = roads;
  }
  Sets chains(roads);
  std::vector<std::uint32_t> open(batch.nodes.size(), none);
  std::uint32_t road = 0;
  auto const meet = [&](WayBatch::Row row) {
    if ((batch.places[row] & NodePlace::joinable) == 0) return;
    if (open[row] == none) {
      open[row] = road;
    } else {
      chains.unite(open[row], road);
      open[row] = none;
    }
  };
  for (std::size_t way = 0; way < batch.size(); ++way) {
    forEachPiece(batch, way, [&](WayBatch::Row start, WayBatch::Row end) {
      meet(start);
      meet(end);
      ++road;
    });
  }
  for (road = 0; road < roads; ++road) cut.roots.push_back(chains.smallest(road));
  for (std::size_t row = 0; row < open.size(); ++row) {
    if (open[row] == none) continue;
    cut.openNodes.push_back(batch.nodes[row]);
    cut.openRoads.push_back(cut.roots[open[row]]);
  }
  return cut;
}

std::vector<std::int64_t> joinChains(std::span<Id const> nodes,
                                     std::span<std::int64_t const> roads) {
  std::vector<std::int64_t> ids(roads.begin(), roads.end());
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  Sets chains(ids.size());
  auto const numberOf = [&](std::size_t i) {
    return static_cast<std::uint32_t>(std::lower_bound(ids.begin(), ids.end(), roads[i]) -
                                      ids.begin());
  };
  std::vector<std::uint32_t> order(nodes.size());
  std::iota(order.begin(), order.end(), 0U);
  std::sort(order.begin(), order.end(),
            [&](std::uint32_t a, std::uint32_t b) { return nodes[a] < nodes[b]; });
  for (std::size_t i = 1; i < order.size(); ++i) {
    if (nodes[order[i - 1]] == nodes[order[i]]) {
      chains.unite(numberOf(order[i - 1]), numberOf(order[i]));
    }
  }
  std::vector<std::int64_t> smallest;
  smallest.reserve(roads.size());
  for (std::size_t i = 0; i < roads.size(); ++i) {
    smallest.push_back(ids[chains.smallest(numberOf(i))]);
  }
  return smallest;
}

WayBatch waysOfRoads(WayBatch const& batch, std::span<std::uint32_t const> roadEnds,
                     std::span<std::int64_t const> roads, std::span<std::int64_t const> ids) {
  WayBatch some;
  constexpr WayBatch::Row none = std::numeric_limits<WayBatch::Row>::max();
  std::vector<TextTable::Number> texts(batch.texts.ends.size(), none);
  std::vector<std::uint8_t> isUsed(batch.nodes.size());
  std::vector<std::size_t> ways;
  for (std::size_t i = 0; i < roads.size();) {
    auto const road = static_cast<std::uint32_t>(roads[i]);
    auto const end = std::upper_bound(roadEnds.begin(), roadEnds.end(), road);
    auto const way = static_cast<std::size_t>(end - roadEnds.begin());
    ways.push_back(way);
    for (WayBatch::Row const row : batch.referencesOf(way)) isUsed[row] = 1;
    for (std::uint32_t piece = way == 0 ? 0 : roadEnds[way - 1]; piece < *end; ++piece) {
      bool const isWanted = i < roads.size() && roads[i] == piece;
      some.isWanted.push_back(isWanted);
      if (isWanted) some.roads.push_back(ids[i++]);
    }
  }
  std::vector<WayBatch::Row> rows(batch.nodes.size());
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (isUsed[row] == 0) continue;
    rows[row] = static_cast<WayBatch::Row>(some.nodes.size());
    some.nodes.push_back(batch.nodes[row]);
    some.latitudes.push_back(batch.latitudes[row]);
    some.longitudes.push_back(batch.longitudes[row]);
    some.places.push_back(batch.places[row]);
  }
  for (std::size_t const way : ways) {
    some.ids.push_back(batch.ids[way]);
    for (WayBatch::Row const row : batch.referencesOf(way)) some.references.push_back(rows[row]);
    some.referenceEnds.push_back(some.references.size());
    for (TextTable::Number const text : batch.tagsOf(way)) {
      if (texts[text] == none) {
        texts[text] = static_cast<TextTable::Number>(some.texts.ends.size());
        std::uint64_t const begin = text == 0 ? 0 : batch.texts.ends[text - 1];
        auto const bytes = batch.texts.bytes.begin();
        some.texts.bytes.insert(some.texts.bytes.end(), bytes + static_cast<std::ptrdiff_t>(begin),
                                bytes + static_cast<std::ptrdiff_t>(batch.texts.ends[text]));
        some.texts.ends.push_back(some.texts.bytes.size());
      }
      some.tags.push_back(texts[text]);
    }
    some.tagEnds.push_back(some.tags.size());
  }
  return some;
}
