// Where the decoders put what they find.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "osm/RecordStorage.hpp"
#include "osm/decode/Bounds.hpp"
#include "osm/records.hpp"
#include "support/Progress.hpp"

namespace OpenStreetMap {

/// Gathers the tags, references and members of one element at a time and then has it stored. Keeps
/// the extent of bounds and nodes.
class ElementSink {
 public:
  /// Stands for the version of an element that has none, as in the PBF format.
  static constexpr std::int64_t noVersion = -1;

  /// What elements of all kinds have.
  struct Head {
    ElementType type;
    Id id = 0;
    std::int64_t version = noVersion;
    bool visible = true;
  };

  ElementSink(ElementSink const&) = delete;
  ElementSink& operator=(ElementSink const&) = delete;
  virtual ~ElementSink() = default;

  /// From now on these are told of elements; they must outlive the sink's use.
  void setSteps(support::Steps& steps) noexcept { steps_ = &steps; }
  /// To be called where long work meets no element.
  void tell() {
    if (steps_ != nullptr) steps_->tell();
  }

  std::u16string const* intern(std::string_view utf8) { return storage_.intern(utf8); }

  /// Whether the tags and members of such elements are wanted at all; of what is not, decoders need
  /// only see whether it is sound.
  virtual bool keepsDetails(ElementType type) const noexcept = 0;
  /// Whether tags with this key are wanted, where any are.
  virtual bool keepsKey(std::string_view utf8) const noexcept = 0;

  /// Begins an element; one that was begun and not ended is forgotten. Throws std::runtime_error
  /// when it is a newer version of the one of its kind just before it.
  void begin(Head const& head) {
    if (steps_ != nullptr) steps_->poll();
    Head& last = last_[static_cast<std::size_t>(head.type)];
    if (head.id == last.id) checkVersions(last, head);
    last = head;
    head_ = &last;
    position_.reset();
    tags_.clear();
    references_.clear();
    members_.clear();
    // A set that was once large stays slow to clear, so a new one takes its place. (`= {}` clears.)
    if (!manyKeys_.empty()) manyKeys_ = decltype(manyKeys_)();
  }
  void setPosition(double latitude, double longitude) { position_ = {latitude, longitude}; }
  /// Of two tags with one key the first stays. Both strings are interned ones.
  void addTag(std::u16string const* key, std::u16string const* value);
  void addReference(Id node) { references_.push_back(node); }
  void addMember(Member const& member) { members_.push_back(member); }
  /// Has the element stored that was begun, unless it is not visible or a node without a position.
  void end();

  /// See Bounds::add.
  void addBounds(double south, double west, double north, double east) {
    bounds_.add(south, west, north, east);
  }

  bool hasBounds() const noexcept { return !bounds_.empty(); }
  /// Of the bounds, if there are any, else of the nodes.
  Limits latitudeLimits() const noexcept {
    return bounds_.empty() ? latitudes_.limits() : bounds_.latitudeLimits();
  }
  Limits longitudeLimits() const {
    return bounds_.empty() ? longitudes_.limits() : bounds_.longitudeLimits();
  }

 protected:
  struct Position {
    double latitude;
    double longitude;
  };

  explicit ElementSink(RecordStorage& storage) : storage_(storage) {}

  /// Store the element with what was added since it began.
  virtual void storeNode(Id id, Position const& position) = 0;
  virtual void storeWay(Id id) = 0;
  virtual void storeRelation(Id id) = 0;

  std::span<Tag const> tags() const noexcept { return tags_; }
  std::span<Id const> references() const noexcept { return references_; }
  std::span<Member const> members() const noexcept { return members_; }
  RecordStorage& storage() noexcept { return storage_; }
  /// A node that counts for the limits.
  void extend(Position const& position) noexcept {
    latitudes_.add(position.latitude, position.latitude);
    longitudes_.add(position.longitude, position.longitude);
  }

 private:
  static void checkVersions(Head const& previous, Head const& head);
  bool isNewKey(std::u16string const* key);

  RecordStorage& storage_;
  support::Steps* steps_ = nullptr;
  // The element under way.
  Head const* head_ = nullptr;
  std::optional<Position> position_;
  std::vector<Tag> tags_;
  std::vector<Id> references_;
  std::vector<Member> members_;
  std::unordered_set<std::u16string const*> manyKeys_;  // of tags_, when they are many
  std::array<Head, 3> last_{};                          // of each kind
  Bounds bounds_;
  Range latitudes_;  // of the nodes, as are the longitudes
  Range longitudes_;
};

}  // namespace OpenStreetMap
