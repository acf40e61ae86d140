// Keeps everything of a file.
#pragma once

#include "osm/decode/ElementSink.hpp"

namespace OpenStreetMap {

/// Stores each element in the table of its kind, unless there is one with its id already.
class TableFiller final : public ElementSink {
 public:
  TableFiller(RecordStorage& storage, NodeTable& nodes, WayTable& ways, RelationTable& relations)
      : ElementSink(storage), nodes_(nodes), ways_(ways), relations_(relations) {}

  bool keepsDetails(ElementType) const noexcept override { return true; }
  bool keepsKey(std::string_view) const noexcept override { return true; }

 private:
  void storeNode(Id id, Position const& position) override;
  void storeWay(Id id) override;
  void storeRelation(Id id) override;

  NodeTable& nodes_;
  WayTable& ways_;
  RelationTable& relations_;
};

}  // namespace OpenStreetMap
