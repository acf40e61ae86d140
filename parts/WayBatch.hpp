// Ways and the nodes under them, as they travel between the parts of an import.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "osm/TagMap.hpp"
#include "osm/decode/ElementSink.hpp"
#include "osm/records.hpp"
#include "parts/TextTable.hpp"

struct WayBatch {
  using Id = OpenStreetMap::Id;
  using Row = std::uint32_t;

  std::vector<Id> nodes;  ///< each once, in file order
  /// Of each node, in degrees: none as long as they are not known, NaN where the file has no node.
  std::vector<double> latitudes;
  std::vector<double> longitudes;
  std::vector<std::uint8_t> places;  ///< of each node: bits of NodePlace, once they are known

  std::vector<Id> ids;
  std::vector<std::uint64_t> referenceEnds;
  std::vector<Row> references;  ///< rows of `nodes`
  std::vector<std::uint64_t> tagEnds;
  std::vector<TextTable::Number> tags;  ///< key and value by turns
  TextTable texts;

  /// Of each piece that the ways are cut into: whether it becomes a road where the batch goes to.
  std::vector<std::uint8_t> isWanted;
  std::vector<std::int64_t> roads;  ///< the ids of those that do

  std::size_t size() const noexcept { return ids.size(); }
  std::span<Row const> referencesOf(std::size_t way) const noexcept {
    std::uint64_t const begin = way == 0 ? 0 : referenceEnds[way - 1];
    return std::span(references).subspan(begin, referenceEnds[way] - begin);
  }
  std::span<TextTable::Number const> tagsOf(std::size_t way) const noexcept {
    std::uint64_t const begin = way == 0 ? 0 : tagEnds[way - 1];
    return std::span(tags).subspan(begin, tagEnds[way] - begin);
  }

  /// Has the nodes that have a position stored, and the ways.
  void tellTo(OpenStreetMap::ElementSink& sink) const;

  template <class Batch, class Action>
  static void forEachColumn(Batch& batch, Action const& action) {
    action(batch.nodes);
    action(batch.latitudes);
    action(batch.longitudes);
    action(batch.places);
    action(batch.ids);
    action(batch.referenceEnds);
    action(batch.references);
    action(batch.tagEnds);
    action(batch.tags);
    action(batch.texts.ends);
    action(batch.texts.bytes);
    action(batch.isWanted);
    action(batch.roads);
  }
};

/// What a node is to the whole network.
namespace NodePlace {
constexpr std::uint8_t junction = 1;
constexpr std::uint8_t joinable = 2;  ///< a junction where two roads may become one
}  // namespace NodePlace

/// Gathers a batch way by way.
class WayBatchMaker {
 public:
  void add(OpenStreetMap::Id id, OpenStreetMap::TagMap const& tags,
           std::span<OpenStreetMap::Id const> references);
  /// The batch, whose nodes have no positions yet. To be called once.
  WayBatch take();

 private:
  WayBatch batch_;
  TextNumbers texts_{batch_.texts};
  std::vector<OpenStreetMap::Id> references_;
};
