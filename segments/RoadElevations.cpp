#include "segments/RoadElevations.hpp"

#include <optional>

#include "tags/layer.hpp"

RoadElevations::RoadElevations(RoadNetworkImporter& importer, support::Steps& steps)
    : isKnown_(importer.roadWayIds.maxRoadId() + 1), elevations_(isKnown_.size()) {
  // The roads of a way come one after the other.
  std::optional<RoadWayIds::WayId> lastWay;
  double lastElevation = 0.0;
  for (RoadWayIds::RoadId id = 0; id < elevations_.size(); ++id) {
    Mean mean;
    importer.roadWayIds.forEach(id, [&](RoadWayIds::WayId way) {
      importer.reader.populate(importer.reader.ways);  // a reader may fill its tables when asked
      if (way != lastWay) {
        lastElevation = wayLayerElevation(importer.reader.ways.at(way).tags);
        lastWay = way;
      }
      mean.add(lastElevation);
      isKnown_[id] = true;
    });
    steps.step();
    elevations_[id] = mean.value();
  }
}
