#include "tags/name.hpp"

#include "support/ustring.hpp"

std::u16string wayName(OpenStreetMap::Id id, OpenStreetMap::Tags const& tags) {
  static std::u16string const key = u"name";
  auto const name = tags.find(key);
  return name != tags.end() ? name->second : support::decimal(id);
}
