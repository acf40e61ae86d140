#include "parts/partNetwork.hpp"

#include <algorithm>
#include <map>
#include <numeric>
#include <tuple>
#include <utility>

#include "osm/records.hpp"
#include "parts/fileOrder.hpp"
#include "segments/RoadElevations.hpp"
#include "segments/elevationProfile.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::modelId;

namespace {

// The rows of ends, as Nodes have them.
std::vector<std::size_t> orderOf(RoadEnds const& ends) {
  std::vector<std::size_t> order(ends.nodes.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    auto const key = [&](std::size_t row) {
      return std::tuple(fileOrder(ends.nodes[row]), ends.lists[row], ends.ranks[row]);
    };
    return key(a) < key(b);
  });
  return order;
}

RoadEnds sorted(RoadEnds const& ends) {
  RoadEnds result;
  for (std::size_t const row : orderOf(ends)) {
    result.nodes.push_back(ends.nodes[row]);
    result.lists.push_back(ends.lists[row]);
    result.ranks.push_back(ends.ranks[row]);
    result.elevations.push_back(ends.elevations[row]);
  }
  return result;
}

}  // namespace

PartNetwork partNetwork(ImportOptions const& options, std::span<WayBatch const> batches) {
  PartImport part(options, batches);
  std::map<std::pair<std::uint64_t, bool>, Id> moved;
  for (MovedEnd const& end : part.makeRoads()) moved[{end.road, end.isEnd}] = end.gone;
  PartNetwork network;
  network.roads = std::move(networkColumns(part.importer).roads);
  auto& roads = network.roads;
  support::Steps steps(part.importer.progress(), support::Stage::settingElevations, 0);
  RoadElevations const elevations(part.importer, steps);
  RoadEnds ends;
  for (std::size_t row = 0; row < roads.id.size(); ++row) {
    auto const road = static_cast<std::uint64_t>(roads.id[row]);
    roads.id[row] = part.idOf(road);
    network.elevations.push_back(elevations.at(road));
    for (bool const isEnd : {true, false}) {
      auto const found = moved.find({road, isEnd});
      bool const isMoved = found != moved.end();
      ends.nodes.push_back(isEnd ? roads.endNode[row] : roads.startNode[row]);
      ends.lists.push_back(static_cast<std::uint8_t>((isEnd ? 0 : 2) + (isMoved ? 1 : 0)));
      ends.ranks.push_back(isMoved ? modelId(found->second)
                                   : static_cast<std::uint64_t>(roads.id[row]));
      ends.elevations.push_back(network.elevations.back());
    }
  }
  network.ends = sorted(ends);
  return network;
}

RestrictionColumns partRestrictions(ImportOptions const& options, std::span<WayBatch const> batches,
                                    RelationBatch const& relations) {
  PartImport part(options, batches, &relations);
  part.makeRoads();
  RestrictionColumns columns = restrictionColumns(part.importer);
  for (auto* const roads : {&columns.fromRoad, &columns.toRoad, &columns.viaRoads.values}) {
    for (std::int64_t& road : *roads) road = part.idOf(static_cast<std::uint64_t>(road));
  }
  return columns;
}

NodeElevations meanElevations(RoadEnds const& ends) {
  NodeElevations result;
  auto const order = orderOf(ends);
  for (std::size_t i = 0; i < order.size();) {
    Id const node = ends.nodes[order[i]];
    Mean mean;
    for (; i < order.size() && ends.nodes[order[i]] == node; ++i) {
      mean.add(ends.elevations[order[i]]);
    }
    result.nodes.push_back(node);
    result.elevations.push_back(mean.value());
  }
  return result;
}

void setElevations(std::span<std::int64_t const> offsets, std::span<NetworkColumns::Point> points,
                   std::span<double const> atStart, std::span<double const> onRoad,
                   std::span<double const> atEnd) {
  for (std::size_t road = 0; road < onRoad.size(); ++road) {
    auto const begin = static_cast<std::size_t>(offsets[road]);
    auto const line = points.subspan(begin, static_cast<std::size_t>(offsets[road + 1]) - begin);
    double const z0 = atStart[road];
    double const z1 = onRoad[road];
    double const z2 = atEnd[road];
    if (isLevel(z0, z1, z2)) {
      for (auto& point : line) point.elevation = z1;
      continue;
    }
    auto const profile = elevationProfile(line.size(), z0, z1, z2);
    for (std::size_t i = 0; i < line.size(); ++i) line[i].elevation = profile[i];
  }
}
