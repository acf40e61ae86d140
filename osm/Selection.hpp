// What of a file a reader keeps.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace OpenStreetMap {

/// Everything, or what ways of one kind need: that is a small part of most files.
struct Selection {
  /// Only ways that carry a tag of this key are kept, and the nodes under them; no relations. Empty
  /// to keep everything.
  std::string wayKey;
  /// The keys of the tags that are kept, of these ways; `wayKey` is one of them.
  std::vector<std::string> keys;

  bool isEverything() const noexcept { return wayKey.empty(); }
  bool keeps(std::string_view key) const noexcept {
    return isEverything() || std::find(keys.begin(), keys.end(), key) != keys.end();
  }
};

}  // namespace OpenStreetMap
