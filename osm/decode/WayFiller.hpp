// Keeps of a file what ways of one kind need, and relations of one type.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "osm/PackedNodes.hpp"
#include "osm/SeenIds.hpp"
#include "osm/Selection.hpp"
#include "osm/WayNodes.hpp"
#include "osm/decode/ElementSink.hpp"

namespace OpenStreetMap {

/// Whether the "type" of a relation is this one, or begins with it and a colon.
bool isOfType(TagMap const& relation, std::u16string_view wanted);

/// Stores the ways and relations of a selection and, when all of the file is in, the nodes under
/// the ways. Until then it keeps the nodes packed, because files have them before the ways.
class WayFiller final : public ElementSink {
 public:
  /// All must outlive the filler; `selection` is not everything.
  WayFiller(RecordStorage& storage, WayTable& ways, RelationTable& relations,
            Selection const& selection);

  bool keepsDetails(ElementType type) const noexcept override {
    return type == ElementType::way ||
           (type == ElementType::relation && selection_.keepsRelations());
  }
  bool keepsKey(std::string_view utf8) const noexcept override { return selection_.keeps(utf8); }

  /// The nodes under the ways. To be called once, at the end: the limits are known then, too.
  WayNodes takeNodes(support::Progress const& progress);
  /// How many elements the file has, kept or not.
  ElementCounts const& counts() const noexcept { return counts_; }

 private:
  void storeNode(Id id, Position const& position) override;
  void storeWay(Id id) override;
  void storeRelation(Id id) override;

  template <class Action>
  void forEachFirstNode(support::Steps& steps, Action const& action) const;

  WayTable& ways_;
  RelationTable& relations_;
  Selection const& selection_;
  std::u16string const* wayKey_;
  std::u16string relationType_;
  PackedNodes nodes_;
  SeenIds wayIds_;
  SeenIds relationIds_;
  ElementCounts counts_;
  IdNumbering ids_;  // of the references of all ways that are kept
  // Of each of these references: its place, until there are numbers.
  std::vector<IdNumbering::Place> references_;
};

}  // namespace OpenStreetMap
