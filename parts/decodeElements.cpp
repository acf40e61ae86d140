#include "parts/decodeElements.hpp"

#include <algorithm>
#include <limits>
#include <string>

#include "parts/PartSink.hpp"
#include "parts/fileOrder.hpp"
#include "support/ustring.hpp"
#include "tags/highway.hpp"
#include "tags/keys.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::Member;
using OpenStreetMap::Selection;
using OpenStreetMap::TagMap;

namespace {

Selection selectionFor(ImportOptions const& options) {
  Selection selection = roadSelection({options.tags});
  addRestrictions(selection);
  return selection;
}

}  // namespace

NodePositions decodeNodes(FilePart const& part, std::span<Id const> wanted) {
  NodePositions positions;
  positions.latitudes.assign(wanted.size(), std::numeric_limits<double>::quiet_NaN());
  positions.longitudes = positions.latitudes;
  std::size_t next = 0;
  PartSink sink({.node = [&](Id id, double latitude, double longitude) {
    while (next < wanted.size() && fileOrder(wanted[next]) < fileOrder(id)) ++next;
    if (next == wanted.size() || wanted[next] != id) return;
    positions.latitudes[next] = latitude;
    positions.longitudes[next] = longitude;
  }});
  decodePart(part, sink);
  positions.count = sink.counts().nodes;
  positions.latitudeLimits = sink.latitudeLimits();
  positions.longitudeLimits = sink.longitudeLimits();
  positions.hasBounds = sink.hasBounds();
  return positions;
}

DecodedWays decodeWays(FilePart const& part, ImportOptions const& options,
                       std::span<Id const> viaWays) {
  DecodedWays ways;
  WayBatchMaker roads;
  auto const store = [&](Id id, TagMap const& tags, std::span<Id const> references) {
    if (!tags.contains(u"highway")) return;
    ++ways.highways;
    if (!references.empty() &&
        std::binary_search(viaWays.begin(), viaWays.end(), id, InFileOrder())) {
      ways.ends.push_back(references.front());
      ways.ends.push_back(references.back());
    }
    if (isRoad(tags)) roads.add(id, tags, references);
  };
  PartSink sink({.way = store, .selection = selectionFor(options)});
  decodePart(part, sink);
  ways.count = sink.counts().ways;
  ways.roads = roads.take();
  return ways;
}

DecodedRelations decodeRelations(FilePart const& part, ImportOptions const& options) {
  DecodedRelations relations;
  auto const store = [&](Id id, TagMap const& tags, std::span<Member const> members) {
    relations.restrictions.add(id, tags, members);
  };
  PartSink sink({.relation = store, .selection = selectionFor(options)});
  decodePart(part, sink);
  relations.count = sink.counts().relations;
  return relations;
}
