// What of a file a reader keeps.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

namespace OpenStreetMap {

/// Everything, or what ways of one kind need, and relations of one type: that is a small part of
/// most files.
struct Selection {
  /// Only ways that carry a tag of this key are kept, and the nodes under them. Empty to keep
  /// everything.
  std::string wayKey;
  /// The keys of the tags that are kept, of these ways; `wayKey` is one of them.
  std::vector<std::string> keys;
  /// Only relations whose "type" is this, or begins with it and a colon, are kept, with all their
  /// members. Empty to keep none.
  std::string relationType;
  /// The keys of the tags that are kept of these relations, besides "type": these, and those that
  /// begin with one of them and a colon.
  std::vector<std::string> relationKeys;

  bool isEverything() const noexcept { return wayKey.empty(); }
  bool keepsRelations() const noexcept { return isEverything() || !relationType.empty(); }
  /// Of ways and relations alike: few of one kind have a key that matters only to the other.
  bool keeps(std::string_view key) const noexcept {
    if (isEverything() || std::find(keys.begin(), keys.end(), key) != keys.end()) return true;
    if (relationType.empty()) return false;
    key = key.substr(0, key.find(':'));
    return key == "type" ||
           std::find(relationKeys.begin(), relationKeys.end(), key) != relationKeys.end();
  }
};

}  // namespace OpenStreetMap
