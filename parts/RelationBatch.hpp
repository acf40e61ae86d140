// Turn restrictions, as they travel between the parts of an import.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "osm/TagMap.hpp"
#include "osm/decode/ElementSink.hpp"
#include "osm/records.hpp"
#include "parts/TextTable.hpp"

struct RelationBatch {
  std::vector<OpenStreetMap::Id> ids;
  std::vector<std::uint64_t> tagEnds;
  std::vector<TextTable::Number> tags;  ///< key and value by turns
  std::vector<std::uint64_t> memberEnds;
  std::vector<std::uint8_t> memberTypes;
  std::vector<OpenStreetMap::Id> members;
  std::vector<TextTable::Number> roles;
  TextTable texts;

  void tellTo(OpenStreetMap::ElementSink& sink) const;

  template <class Batch, class Action>
  static void forEachColumn(Batch& batch, Action const& action) {
    action(batch.ids);
    action(batch.tagEnds);
    action(batch.tags);
    action(batch.memberEnds);
    action(batch.memberTypes);
    action(batch.members);
    action(batch.roles);
    action(batch.texts.ends);
    action(batch.texts.bytes);
  }
};

/// Gathers a batch relation by relation, and whom they name.
class RelationBatchMaker {
 public:
  void add(OpenStreetMap::Id id, OpenStreetMap::TagMap const& tags,
           std::span<OpenStreetMap::Member const> members);

  RelationBatch const& batch() const noexcept { return batch_; }
  /// The nodes with the role "via", and the ways with any role or with that one.
  std::vector<OpenStreetMap::Id> viaNodes;
  std::vector<OpenStreetMap::Id> ways;
  std::vector<OpenStreetMap::Id> viaWays;

 private:
  RelationBatch batch_;
  TextNumbers texts_{batch_.texts};
};
