#include "ways/selectHighwayWays.hpp"

#include <algorithm>

#include "tags/highway.hpp"

using OpenStreetMap::Reader;
using OpenStreetMap::Way;

namespace {

bool allNodesPresent(Reader& reader, Way const& way) {
  if (way.nodeReferences.empty()) return false;
  for (auto const number : reader.wayNodes.numbersOf(way)) {
    reader.populate(reader.nodes);  // reads at the first call, and returns at once after that
    if (!reader.wayNodes.has(number)) return false;
  }
  return way.nodeReferences.size() >= 2;
}

}  // namespace

std::vector<Way const*> selectHighwayWays(Reader& reader) {
  reader.populate(reader.ways);
  support::Steps steps(reader.progress(), support::Stage::selectingWays, reader.ways.size());
  std::vector<Way const*> ways;
  for (Way const& way : reader.ways) {
    steps.step();
    if (way.tags.contains(u"highway") && isRoad(way.tags) && allNodesPresent(reader, way)) {
      ways.push_back(&way);
    }
  }
  ways.shrink_to_fit();  // it lives as long as the import
  // Every later stage depends on this order, so it is not left to the reader's.
  std::sort(ways.begin(), ways.end(),
            steps.polling([](Way const* a, Way const* b) { return a->id < b->id; }));
  return ways;
}
