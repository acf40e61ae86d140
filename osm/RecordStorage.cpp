#include "osm/RecordStorage.hpp"

#include "support/ustring.hpp"

namespace OpenStreetMap {

std::u16string const* RecordStorage::intern(std::string_view utf8) {
  support::decodeUtf8(utf8, scratch_);
  auto const found = strings_.find(std::u16string_view(scratch_));
  return found != strings_.end() ? &*found : &*strings_.emplace(scratch_).first;
}

}  // namespace OpenStreetMap
