// The tags of an element: a small map whose strings live elsewhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "support/lookup.hpp"

namespace OpenStreetMap {

/// A key and a value, each kept once for the whole file (see RecordStorage).
struct Tag {
  std::u16string const* key;
  std::u16string const* value;
};

/// Key to value, each key at most once, with the reading half of a hash map's interface. An element
/// has a handful of tags, so they stand in a row and are searched one after the other. Both the
/// row and the strings belong to the reader and stay for its life.
class TagMap {
 public:
  using key_type = std::u16string;
  using mapped_type = std::u16string;
  using value_type = std::pair<std::u16string const&, std::u16string const&>;

  class const_iterator {
   public:
    using iterator_category = std::input_iterator_tag;  // since it returns no real reference
    using iterator_concept = std::forward_iterator_tag;
    using value_type = TagMap::value_type;
    using difference_type = std::ptrdiff_t;
    using reference = value_type;
    struct pointer {
      value_type pair;
      value_type const* operator->() const noexcept { return &pair; }
    };

    const_iterator() noexcept = default;
    explicit const_iterator(Tag const* tag) noexcept : tag_(tag) {}
    reference operator*() const noexcept { return {*tag_->key, *tag_->value}; }
    pointer operator->() const noexcept { return {**this}; }
    const_iterator& operator++() noexcept {
      ++tag_;
      return *this;
    }
    const_iterator operator++(int) noexcept {
      const_iterator const before = *this;
      ++tag_;
      return before;
    }
    friend bool operator==(const_iterator const&, const_iterator const&) noexcept = default;

   private:
    Tag const* tag_ = nullptr;
  };

  TagMap() noexcept = default;
  /// `tags` must outlive the map and hold no key twice.
  explicit TagMap(std::span<Tag const> tags) noexcept : tags_(tags) {}

  std::size_t size() const noexcept { return tags_.size(); }
  bool empty() const noexcept { return tags_.empty(); }
  const_iterator begin() const noexcept { return const_iterator(tags_.data()); }
  const_iterator end() const noexcept { return const_iterator(tags_.data() + tags_.size()); }

  /// Keys are compared code unit by code unit.
  const_iterator find(std::u16string_view key) const noexcept {
    Tag const* tag = tags_.data();
    Tag const* const last = tag + tags_.size();
    while (tag != last && *tag->key != key) ++tag;
    return const_iterator(tag);
  }
  bool contains(std::u16string_view key) const noexcept { return find(key) != end(); }
  /// Whether the key is there, with exactly this value.
  bool has(std::u16string_view key, std::u16string_view value) const noexcept {
    const_iterator const found = find(key);
    return found != end() && found->second == value;
  }
  /// Throws std::out_of_range("_Map_base::at") when there is no such key.
  std::u16string const& at(std::u16string_view key) const {
    const_iterator const found = find(key);
    if (found == end()) support::throwMissing();
    return found->second;
  }

 private:
  std::span<Tag const> tags_;
};
static_assert(std::forward_iterator<TagMap::const_iterator>);

}  // namespace OpenStreetMap
