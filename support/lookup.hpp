// Lookups in tables that may miss.
#pragma once

#include <stdexcept>

namespace support {

/// Throws std::out_of_range("_Map_base::at"): every table of the import fails with this one text,
/// whatever the compiler's own `at` says.
[[noreturn]] inline void throwMissing() {
  throw std::out_of_range("_Map_base::at");
}

/// The value at `key` of a standard map. Throws as above when there is none.
template <class Map>
auto& lookup(Map& map, typename Map::key_type const& key) {
  auto const found = map.find(key);
  if (found == map.end()) throwMissing();
  return found->second;
}

}  // namespace support
