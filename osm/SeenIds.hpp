// Which ids of a kind of element a file has had so far.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>

#include "support/IdMap.hpp"

namespace OpenStreetMap {

/// Files are mostly sorted by id: while the ids ascend, all that is needed is a list of them.
class SeenIds {
 public:
  /// Returns whether the id is new.
  bool insert(std::int64_t id) {
    if (!index_.empty()) return index_.insert(id).second;
    if (list_.empty() || list_.back() < id) {
      list_.push_back(id);
      return true;
    }
    index_.insert(list_.begin(), list_.end());
    list_ = {};
    return index_.insert(id).second;
  }

  std::size_t size() const noexcept { return index_.empty() ? list_.size() : index_.size(); }

 private:
  std::deque<std::int64_t> list_;
  support::IdSet index_;  // empty as long as the ids ascend
};

}  // namespace OpenStreetMap
