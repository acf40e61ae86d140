#include "ways/collectWayAttributes.hpp"

#include "importer/RoadNetworkImporter.hpp"
#include "tags/name.hpp"
#include "tags/oneway.hpp"

using OpenStreetMap::Way;

void collectWayAttributes(RoadNetworkImporter& importer) {
  importer.wayNames.reserve(importer.selectedWays.size());
  importer.wayDirections.reserve(importer.selectedWays.size());
  support::Steps steps(importer.progress(), support::Stage::namingWays,
                       importer.selectedWays.size());
  for (Way const* const way : importer.selectedWays) {
    importer.wayNames.emplace_back(wayName(way->id, way->tags));
    importer.wayDirections.push_back(wayDirection(way->tags, importer.options.oneWays));
    steps.step();
  }
}
