#include "osm/collectWayAttributes.hpp"

#include "importer/RoadNetworkImporter.hpp"
#include "support/ustring.hpp"

using OpenStreetMap::Tags;
using OpenStreetMap::Way;
using velora::roadnetwork::DirectionOfTravel;

void collectWayAttributes(RoadNetworkImporter& importer) {
  importer.wayNames.reserve(importer.selectedWays.size());
  importer.wayDirections.reserve(importer.selectedWays.size());
  for (Way const* const way : importer.selectedWays) {
    importer.wayNames.try_emplace(way->id, wayName(way->id, way->tags));
    importer.wayDirections.try_emplace(way->id, wayDirection(way->tags));
  }
}

std::u16string wayName(OpenStreetMap::Id id, Tags const& tags) {
  static std::u16string const key = u"name";
  auto const name = tags.find(key);
  return name != tags.end() ? name->second : support::decimal(id);
}

DirectionOfTravel wayDirection(Tags const& tags) {
  static std::u16string const key = u"oneway";
  auto const oneway = tags.find(key);
  if (oneway == tags.end()) return DirectionOfTravel::both;
  std::u16string const& value = oneway->second;
  if (value == u"yes" || value == u"1") return DirectionOfTravel::forward;
  if (value == u"-1") return DirectionOfTravel::backward;
  return DirectionOfTravel::both;
}
