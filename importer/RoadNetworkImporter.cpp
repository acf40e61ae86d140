#include "importer/RoadNetworkImporter.hpp"

#include "graph/chainRoads.hpp"
#include "graph/createNodes.hpp"
#include "graph/createRoads.hpp"
#include "importer/setGeographicReference.hpp"
#include "segments/assignSegmentElevations.hpp"
#include "segments/createRoadSegments.hpp"
#include "support/ustring.hpp"
#include "ways/collectWayAttributes.hpp"
#include "ways/selectHighwayWays.hpp"

void RoadNetworkImporter::run(std::string const& fileName) {
  reader.setFile(support::to_ustring(fileName));
  run();
}

void RoadNetworkImporter::run() {
  selectedWays = selectHighwayWays(reader);
  collectWayAttributes(*this);
  createNodes(*this);
  createRoads(*this);
  chainRoads(*this);
  createRoadSegments(*this);
  assignSegmentElevations(*this);
  setGeographicReference(*this);
}
