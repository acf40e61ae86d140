// An ordered map from an id to an element.
#pragma once

#include <cstddef>
#include <iterator>
#include <map>

namespace kb::zero {

/// Holds one reference on each element. `Map` is an ordered map from `K` to handles `V`.
template <class K, class V, class Map = std::map<K, V>>
class ElementMapBase {
 public:
  using const_iterator = typename Map::const_iterator;

  std::size_t size() const noexcept { return map_.size(); }
  const_iterator begin() const noexcept { return map_.begin(); }  ///< ascending keys
  const_iterator end() const noexcept { return map_.end(); }

  const_iterator find(K const& key) const { return map_.find(key); }  ///< or `end()`

  /// A new handle to the element at `key`, or a null handle; nothing is ever inserted.
  V operator[](K const& key) const {
    auto const found = find(key);
    return found == end() ? V() : found->second;
  }

  /// In constant time for a key beyond the last one.
  bool contains(K const& key) const {
    return !map_.empty() && !(std::prev(end())->first < key) && find(key) != end();
  }

  /// Adds an element unless the key is taken; fastest when keys arrive in ascending order.
  /// Returns whether it was added.
  bool insert(K const& key, V const& element) {
    std::size_t const before = map_.size();
    map_.emplace_hint(map_.end(), key, element);
    return map_.size() != before;
  }
  void erase(K const& key) { map_.erase(key); }

 private:
  Map map_;
};

}  // namespace kb::zero
