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

std::string textOf(std::u16string_view key, std::span<RoadPiece const> pieces) {
  return joinedValues(tagValues(key, pieces));
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

RoadParts roadParts(Road const& road, RoadNetworkImporter const& importer) {
  std::vector<RoadPiece> pieces;
  forEachPiece(*road.get(), importer, [&](RoadPiece const& piece) { pieces.push_back(piece); });
  return {road->getID(),
          road->getDirection(),
          OpenStreetMap::osmId(road->getStartNode()->getID()),
          OpenStreetMap::osmId(road->getEndNode()->getID()),
          wayIdsOf(road, importer),
          std::move(pieces),
          road->getCentersY().values(),
          road->getCentersX().values(),
          (*road->getRoadSegments().begin())->getElevations().values()};
}

std::vector<std::u16string const*> tagValues(std::u16string_view key,
                                             std::span<RoadPiece const> pieces) {
  std::vector<std::u16string const*> values;
  std::unordered_set<std::u16string const*> seen;  // equal strings of a file are one
  for (RoadPiece const& piece : pieces) {
    auto const tag = piece.way->tags.find(key);
    if (tag == piece.way->tags.end()) continue;
    auto const* const value = &tag->second;
    if (!values.empty()) {
      if (value == values.back()) continue;
      if (values.size() == 1) seen.insert(values.front());
      if (!seen.insert(value).second) continue;
    }
    values.push_back(value);
  }
  return values;
}

std::string joinedValues(std::span<std::u16string const* const> values) {
  std::u16string joined;
  for (auto const* const value : values) {
    if (value != values.front()) joined += u';';
    joined += *value;
  }
  return exchangeable(joined);
}

RoadRow RoadRows::operator()(Road const& road) const {
  RoadParts parts = roadParts(road, importer_);
  std::string name = textOf(u"name", parts.pieces);
  std::string highway = textOf(u"highway", parts.pieces);
  std::vector<std::string> tags;
  tags.reserve(keys_.size());
  for (std::u16string const& key : keys_) tags.push_back(textOf(key, parts.pieces));
  bool const hasElevations = std::all_of(parts.elevations.begin(), parts.elevations.end(),
                                         [](double elevation) { return std::isfinite(elevation); });
  return {std::move(parts), std::move(name),  std::move(highway),
          std::move(tags),  roadLength(road), hasElevations};
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
