#include "support/Progress.hpp"

namespace support {

std::string_view nameOf(Stage stage) {
  switch (stage) {
    case Stage::reading:
      return "reading";
    case Stage::placingNodes:
      return "placing nodes";
    case Stage::selectingWays:
      return "selecting ways";
    case Stage::namingWays:
      return "naming ways";
    case Stage::findingJunctions:
      return "finding junctions";
    case Stage::makingNodes:
      return "making Nodes";
    case Stage::makingRoads:
      return "making roads";
    case Stage::findingJoins:
      return "finding roads to join";
    case Stage::planningJoins:
      return "planning joins";
    case Stage::joiningRoads:
      return "joining roads";
    case Stage::makingSegments:
      return "making segments";
    case Stage::settingElevations:
      return "setting elevations";
    case Stage::checkingWays:
      return "checking ways";
    case Stage::checkingTags:
      return "checking tags";
    case Stage::checkingSharedNodes:
      return "checking shared nodes";
    case Stage::checkingJoins:
      return "checking joins";
    case Stage::checkingSlopes:
      return "checking slopes";
    case Stage::connecting:
      return "connecting roads";
    case Stage::cuttingLines:
      return "cutting lines";
    case Stage::findingCrossings:
      return "finding crossings";
    case Stage::checkingCrossings:
      return "checking crossings";
    case Stage::findingIslands:
      return "finding islands";
    case Stage::findingTraps:
      return "finding traps";
    case Stage::mappingRestrictions:
      return "mapping turn restrictions";
    case Stage::makingColumns:
      return "making columns";
    case Stage::writing:
      return "writing";
    case Stage::writingRestrictions:
      return "writing turn restrictions";
    case Stage::writingReport:
      return "writing the report";
  }
  return "";
}

}  // namespace support
