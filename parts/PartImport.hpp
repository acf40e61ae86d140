// The engine's import of a part of a network.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "graph/chainRoads.hpp"
#include "importer/OwnImport.hpp"
#include "parts/RelationBatch.hpp"
#include "parts/WayBatch.hpp"

/// An importer whose reader is given batches, and the stages up to the roads' segments on those
/// pieces of ways that are wanted: whole chains of roads that continue one another. Roads count
/// from 1 in it, in the order of their ids in the whole network.
class PartImport {
 public:
  /// The batches must stay until the reader has been asked for something.
  PartImport(ImportOptions options, std::span<WayBatch const> batches,
             RelationBatch const* relations = nullptr);

  /// Makes the roads; each way is in one batch only. Returns the ends that were moved.
  std::vector<MovedEnd> makeRoads();

  /// The id of a road in the whole network.
  std::int64_t idOf(std::uint64_t road) const { return ids_.at(road - 1); }

 private:
  void findPieces();
  void findPlaces();

  OwnImport import_;
  std::span<WayBatch const> batches_;
  std::vector<std::int64_t> ids_;

 public:
  RoadNetworkImporter& importer = import_.importer;
};

/// In how many pieces a way of a batch is cut, whose nodes' places are known.
std::size_t countPieces(WayBatch const& batch, std::size_t way);
