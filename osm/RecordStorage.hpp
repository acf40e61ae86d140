// The memory behind the records.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_set>

#include "support/TextHash.hpp"

namespace OpenStreetMap {

/// Keeps the node references, tags and members of all records in large blocks, and each distinct
/// string once. Nothing in it moves or goes away before the whole does.
class RecordStorage {
 public:
  /// A copy of `values` that stays.
  template <class T>
  std::span<T const> keep(std::span<T const> values) {
    static_assert(std::is_trivially_destructible_v<T>);
    if (values.empty()) return {};
    T* const copy = static_cast<T*>(blocks_.allocate(values.size_bytes(), alignof(T)));
    std::uninitialized_copy(values.begin(), values.end(), copy);
    return {copy, values.size()};
  }

  /// The one string equal to `text`. Ill-formed UTF-8 becomes U+FFFD.
  std::u16string const* intern(std::string_view utf8);

 private:
  struct Hash : support::TextHash {
    using is_transparent = void;
  };

  std::pmr::monotonic_buffer_resource blocks_{64 * 1024};
  std::pmr::unordered_set<std::u16string, Hash, std::equal_to<>> strings_{&blocks_};
  std::u16string scratch_;
};

}  // namespace OpenStreetMap
