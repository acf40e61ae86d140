#include "export/NetworkRows.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "export/NumberText.hpp"
#include "export/roadLength.hpp"
#include "importer/RoadNetworkImporter.hpp"
#include "support/ustring.hpp"

using OpenStreetMap::Id;
using velora::roadnetwork::DirectionOfTravel;
using velora::roadnetwork::Node;
using velora::roadnetwork::Road;

namespace {

// No exchange format can hold U+0000.
std::string exchangeable(std::u16string_view text) {
  std::u16string copy(text);
  std::replace(copy.begin(), copy.end(), u'\0', u'\uFFFD');
  return support::ustring_to_utf8(copy);
}

std::string highwayOf(std::vector<Id> const& wayIds, RoadNetworkImporter const& importer) {
  std::vector<std::u16string_view> values;
  std::u16string joinedValues;
  for (Id const id : wayIds) {
    std::u16string_view const value = importer.reader.ways.at(id).tags.find(u"highway")->second;
    if (std::find(values.begin(), values.end(), value) != values.end()) continue;
    if (!values.empty()) joinedValues += u';';
    joinedValues += values.emplace_back(value);
  }
  return exchangeable(joinedValues);
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

RoadRow roadRow(Road const& road, RoadNetworkImporter const& importer) {
  std::vector<Id> wayIds = wayIdsOf(road, importer);
  std::string highway = highwayOf(wayIds, importer);
  std::span<double const> const elevations =
      (*road->getRoadSegments().begin())->getElevations().values();
  return {road->getID(),
          exchangeable(road->getName()),
          std::move(highway),
          road->getDirection(),
          OpenStreetMap::osmId(road->getStartNode()->getID()),
          OpenStreetMap::osmId(road->getEndNode()->getID()),
          roadLength(road),
          std::move(wayIds),
          road->getCentersY().values(),
          road->getCentersX().values(),
          elevations,
          std::all_of(elevations.begin(), elevations.end(),
                      [](double elevation) { return std::isfinite(elevation); })};
}

std::vector<DirectedEdge> directedEdges(RoadRow const& road) {
  std::vector<DirectedEdge> edges;
  if (road.direction != DirectionOfTravel::backward) {
    edges.push_back({road.startNode, road.endNode, wellKnownText(road, false)});
  }
  if (road.direction != DirectionOfTravel::forward) {
    edges.push_back({road.endNode, road.startNode, wellKnownText(road, true)});
  }
  return edges;
}
