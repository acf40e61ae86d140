// Takes what is wanted of a part of a sorted file.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "osm/RecordStorage.hpp"
#include "osm/Selection.hpp"
#include "osm/decode/ElementSink.hpp"

/// Sees to it that the elements stand as `osmium sort` puts them, and hands over each stored one of
/// the part, of several with one id the first.
class PartSink final : public OpenStreetMap::ElementSink {
 public:
  using Id = OpenStreetMap::Id;
  using Tags = OpenStreetMap::TagMap;

  /// What is asked for; the others are only checked.
  struct Wanted {
    std::function<void(Id id, double latitude, double longitude)> node{};
    std::function<void(Id id, Tags const& tags, std::span<Id const> references)> way{};
    std::function<void(Id id, Tags const& tags, std::span<OpenStreetMap::Member const> members)>
        relation{};
    OpenStreetMap::Selection selection{};
  };
  struct Element {
    OpenStreetMap::ElementType type;
    Id id;
  };

  explicit PartSink(Wanted wanted);

  bool keepsDetails(OpenStreetMap::ElementType type) const noexcept override;
  bool keepsKey(std::string_view utf8) const noexcept override {
    return wanted_.selection.keeps(utf8);
  }

  /// What has come so far is the lead.
  void beginPart() noexcept {
    lastOfLead_ = last_;
    isInPart_ = true;
  }

  /// The last element of the lead and the first one of the part, if there are any.
  std::optional<Element> const& lastOfLead() const noexcept { return lastOfLead_; }
  std::optional<Element> const& first() const noexcept { return first_; }
  /// How many elements the part has, each id counted once.
  OpenStreetMap::ElementCounts const& counts() const noexcept { return counts_; }

 private:
  PartSink(Wanted wanted, std::unique_ptr<OpenStreetMap::RecordStorage> storage);

  void storeNode(Id id, Position const& position) override;
  void storeWay(Id id) override;
  void storeRelation(Id id) override;
  bool isNewInPart(Element const& element);

  Wanted wanted_;
  std::unique_ptr<OpenStreetMap::RecordStorage> strings_;
  std::u16string relationType_;
  bool isInPart_ = false;
  OpenStreetMap::ElementCounts counts_;
  std::optional<Element> lastOfLead_;
  std::optional<Element> first_;
  std::optional<Element> last_;  // so far
};
