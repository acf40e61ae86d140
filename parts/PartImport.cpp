#include "parts/PartImport.hpp"

#include <algorithm>
#include <utility>

#include "graph/createNodes.hpp"
#include "graph/createRoads.hpp"
#include "segments/createRoadSegments.hpp"
#include "ways/collectWayAttributes.hpp"
#include "ways/selectHighwayWays.hpp"

using OpenStreetMap::ElementSink;
using OpenStreetMap::Id;

PartImport::PartImport(ImportOptions options, std::span<WayBatch const> batches,
                       RelationBatch const* relations)
    : import_(std::move(options)), batches_(batches) {
  importer.reader.setElements([batches, relations](ElementSink& sink) {
    for (WayBatch const& batch : batches) batch.tellTo(sink);
    if (relations != nullptr) relations->tellTo(sink);
  });
}

std::vector<MovedEnd> PartImport::makeRoads() {
  importer.selectedWays = selectHighwayWays(importer.reader);
  collectWayAttributes(importer);
  findPieces();
  findPlaces();
  createJunctionNodes(importer);
  createRoads(importer);
  std::vector<MovedEnd> moved;
  chainRoads(importer, &moved);
  createRoadSegments(importer);
  return moved;
}

// In the order of the selected ways, which is that of their ids.
void PartImport::findPieces() {
  struct Pieces {
    Id way;
    WayBatch const* batch;
    std::size_t first;
    std::size_t count;
    std::size_t firstRoad;
  };
  std::vector<Pieces> ways;
  for (WayBatch const& batch : batches_) {
    std::size_t piece = 0;
    std::size_t road = 0;
    for (std::size_t way = 0; way < batch.size(); ++way) {
      std::size_t const count = countPieces(batch, way);
      ways.push_back({batch.ids[way], &batch, piece, count, road});
      for (std::size_t const last = piece + count; piece < last; ++piece) {
        if (batch.isWanted.at(piece) != 0) ++road;
      }
    }
  }
  std::sort(ways.begin(), ways.end(),
            [](Pieces const& a, Pieces const& b) { return a.way < b.way; });
  for (Pieces const& way : ways) {
    std::size_t road = way.firstRoad;
    for (std::size_t piece = way.first; piece < way.first + way.count; ++piece) {
      bool const isWanted = way.batch->isWanted[piece] != 0;
      importer.wantedPieces.push_back(isWanted);
      if (isWanted) ids_.push_back(way.batch->roads.at(road++));
    }
  }
}

void PartImport::findPlaces() {
  auto const& nodes = importer.reader.wayNodes;
  importer.junctionNodeIds = JunctionNodes(nodes.size());
  auto& joinable = importer.joinableNodes.emplace();
  auto find = nodes.finder();
  for (WayBatch const& batch : batches_) {
    for (std::size_t row = 0; row < batch.nodes.size(); ++row) {
      if ((batch.places[row] & NodePlace::junction) != 0) {
        importer.junctionNodeIds.insert(find(batch.nodes[row]));
      }
      if ((batch.places[row] & NodePlace::joinable) != 0) joinable.insert(batch.nodes[row]);
    }
  }
}

std::size_t countPieces(WayBatch const& batch, std::size_t way) {
  auto const behindFirst = batch.referencesOf(way).subspan(1);
  return static_cast<std::size_t>(std::count_if(
      behindFirst.begin(), behindFirst.end(),
      [&](WayBatch::Row row) { return (batch.places[row] & NodePlace::junction) != 0; }));
}
