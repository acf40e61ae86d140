// Where the decoders put what they find.
#pragma once

#include <limits>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "osm/RecordStorage.hpp"
#include "osm/records.hpp"

namespace OpenStreetMap {

/// Gathers the tags, references and members of one element at a time and stores the element, unless
/// there is one of its kind and id already. Keeps the extent of bounds and nodes.
class TableFiller {
 public:
  TableFiller(RecordStorage& storage, NodeTable& nodes, WayTable& ways, RelationTable& relations)
      : storage_(storage), nodes_(nodes), ways_(ways), relations_(relations) {}

  std::u16string const* intern(std::string_view utf8) { return storage_.intern(utf8); }

  /// Of two tags with one key the first stays. Both strings are interned ones.
  void addTag(std::u16string const* key, std::u16string const* value);
  void addReference(Id node) { references_.push_back(node); }
  void addMember(Member const& member) { members_.push_back(member); }

  /// Store the element, or drop it, together with what was added since the last one.
  void storeNode(Id id, double latitude, double longitude);
  void storeWay(Id id);
  void storeRelation(Id id);
  void drop() noexcept;

  /// `west` is greater than `east` where the bounds cross the antimeridian. Throws
  /// std::runtime_error when `south` is greater than `north`.
  void addBounds(double south, double west, double north, double east);

  Limits latitudeLimits() const noexcept { return box().latitude.limits(); }
  Limits longitudeLimits() const noexcept { return box().longitude.limits(); }

 private:
  struct Range {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    void add(double lowest, double highest) noexcept;
    bool empty() const noexcept { return low == std::numeric_limits<double>::infinity(); }
    Limits limits() const noexcept { return empty() ? unknownLimits : Limits(low, high); }
  };
  struct Box {
    Range latitude;
    Range longitude;
  };
  Box const& box() const noexcept { return bounds_.latitude.empty() ? extent_ : bounds_; }

  bool isNewKey(std::u16string const* key);

  RecordStorage& storage_;
  NodeTable& nodes_;
  WayTable& ways_;
  RelationTable& relations_;
  std::vector<Tag> tags_;
  std::vector<Id> references_;
  std::vector<Member> members_;
  std::unordered_set<std::u16string const*> manyKeys_;  // of tags_, when they are many
  Box bounds_;
  Box extent_;
};

}  // namespace OpenStreetMap
