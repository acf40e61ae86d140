#include "export/tagColumns.hpp"

#include <algorithm>
#include <set>

#include "support/lowerCase.hpp"

namespace {

constexpr std::string_view common[] = {
    "fid",  "geom",    "geometry",  "id",         "kind",     "node_id", "road_id",
    "name", "highway", "direction", "start_node", "end_node", "length",  "osm_way_ids"};

bool isControl(char c) {
  return (c >= 0 && c < ' ') || c == '\x7F';
}

}  // namespace

std::vector<std::string> tagColumns(std::vector<std::string> const& keys,
                                    std::span<std::string_view const> own) {
  std::set<std::string> taken(std::begin(common), std::end(common));
  for (std::string_view const name : own) taken.insert(support::lowerCase(name));
  std::vector<std::string> names;
  names.reserve(keys.size());
  for (std::string name : keys) {
    std::replace_if(name.begin(), name.end(), isControl, '_');
    while (!taken.insert(support::lowerCase(name)).second) name.insert(0, "osm_");
    names.push_back(std::move(name));
  }
  return names;
}
