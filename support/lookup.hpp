// Lookups in tables that may miss.
#pragma once

#include <stdexcept>

namespace support {

/// The value at `key` of a standard map. Throws std::out_of_range("_Map_base::at") when there is
/// none: every table of the import fails with this one text, whatever the compiler's own `at` says.
template <class Map>
auto& lookup(Map& map, typename Map::key_type const& key) {
  auto const found = map.find(key);
  if (found == map.end()) throw std::out_of_range("_Map_base::at");
  return found->second;
}

}  // namespace support
