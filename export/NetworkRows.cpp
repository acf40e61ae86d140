#include "export/NetworkRows.hpp"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

#include "export/NumberText.hpp"
#include "importer/RoadNetworkImporter.hpp"
#include "report/roadLength.hpp"
#include "support/ustring.hpp"

using OpenStreetMap::Id;
using velora::roadnetwork::DirectionOfTravel;
using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

// The different values along a road.
std::string valuesOf(std::u16string_view key, std::span<RoadPiece const> pieces) {
  std::unordered_set<std::u16string const*> seen;  // equal strings of a file are one
  std::u16string const* last = nullptr;
  std::u16string joined;
  for (RoadPiece const& piece : pieces) {
    auto const tag = piece.way->tags.find(key);
    if (tag == piece.way->tags.end() || &tag->second == last) continue;
    bool const isFirst = std::exchange(last, &tag->second) == nullptr;
    if (pieces.size() > 1 && !seen.insert(last).second) continue;
    if (!isFirst) joined += u';';
    joined += *last;
  }
  return exchangeable(joined);
}

std::string wellKnownText(RoadRow const& road, bool reversed) {
  std::size_t const size = road.longitudes.size();
  std::string text = road.hasElevations ? "LINESTRING Z (" : "LINESTRING (";
  for (std::size_t k = 0; k < size; ++k) {
    std::size_t const i = reversed ? size - 1 - k : k;
    if (k > 0) text += ", ";
    text += NumberText(road.longitudes[i]);
    text += ' ';
    text += NumberText(road.latitudes[i]);
    if (!road.hasElevations) continue;
    text += ' ';
    text += NumberText(road.elevations[i]);
  }
  return text += ')';
}

}  // namespace

std::string exchangeable(std::u16string_view text) {
  std::u16string copy(text);
  std::replace(copy.begin(), copy.end(), u'\0', u'\uFFFD');
  return support::ustring_to_utf8(copy);
}

std::vector<Id> wayIdsOf(Road const& road, RoadNetworkImporter const& importer) {
  std::vector<Id> ids;
  importer.roadWayIds.forEach(road->getID(), [&](Id id) { ids.push_back(id); });
  std::sort(ids.begin(), ids.end());
  ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
  return ids;
}

NodeRow nodeRow(Node const& node) {
  auto const position = node->getPosition();
  return {OpenStreetMap::osmId(node->getID()), position[1], position[0], position[2]};
}

RoadRow RoadRows::operator()(Road const& road) const {
  std::vector<RoadPiece> pieces;
  forEachPiece(*road.get(), importer_, [&](RoadPiece const& piece) { pieces.push_back(piece); });
  std::vector<std::string> tags;
  tags.reserve(keys_.size());
  for (std::u16string const& key : keys_) tags.push_back(valuesOf(key, pieces));
  std::span<double const> const elevations =
      (*road->getRoadSegments().begin())->getElevations().values();
  return {road->getID(),
          valuesOf(u"name", pieces),
          valuesOf(u"highway", pieces),
          std::move(tags),
          road->getDirection(),
          OpenStreetMap::osmId(road->getStartNode()->getID()),
          OpenStreetMap::osmId(road->getEndNode()->getID()),
          roadLength(road),
          wayIdsOf(road, importer_),
          std::move(pieces),
          road->getCentersY().values(),
          road->getCentersX().values(),
          elevations,
          std::all_of(elevations.begin(), elevations.end(),
                      [](double elevation) { return std::isfinite(elevation); })};
}

RoadRows::RoadRows(RoadNetworkImporter const& importer) : importer_(importer) {
  for (std::string const& key : importer.options.tags) keys_.push_back(support::to_ustring(key));
}

std::vector<DirectedEdge> directedEdges(RoadRow const& road) {
  std::vector<DirectedEdge> edges;
  if (road.direction != DirectionOfTravel::backward) {
    edges.push_back({road.startNode, road.endNode, false, wellKnownText(road, false)});
  }
  if (road.direction != DirectionOfTravel::forward) {
    edges.push_back({road.endNode, road.startNode, true, wellKnownText(road, true)});
  }
  return edges;
}
