#include <algorithm>
#include <utility>

#include "report/fillFinding.hpp"
#include "report/finders.hpp"
#include "tags/highway.hpp"

using OpenStreetMap::Id;
using OpenStreetMap::Way;

namespace {

void accountForWay(RoadNetworkImporter const& importer, Way const& way, ImportReport& report) {
  if (!way.tags.contains(u"highway")) return;
  ++report.highwayWays;
  if (!isRoad(way.tags)) {
    report.notARoad.push_back(&way);
    return;
  }
  ImportReport::MissingNodes missing{&way, 0, {}};
  auto const& nodes = importer.reader.wayNodes;
  auto const numbers = nodes.numbersOf(way);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (nodes.has(numbers[i])) continue;
    ++missing.count;
    if (missing.first.size() < namedAtMost) missing.first.push_back(way.nodeReferences[i]);
  }
  if (missing.count > 0) {
    report.missingNodes.push_back(std::move(missing));
  } else if (way.nodeReferences.size() < 2) {
    report.fewerThanTwoNodes.push_back(&way);
  } else {
    ++report.importedWays;
  }
}

}  // namespace

ImportReport reportOn(RoadNetworkImporter const& importer) {
  ImportReport report;
  support::Steps steps(importer.progress(), support::Stage::checkingWays,
                       importer.reader.ways.size());
  for (Way const& way : importer.reader.ways) {
    accountForWay(importer, way, report);
    steps.step();
  }
  findOddTags(importer, report);
  findSharedNodes(importer, report);
  findLossyJoins(importer, report);
  findSteepRoads(importer, report);
  RoadGraph const graph(importer);
  findCrossings(importer, graph, report);
  findIslands(importer, graph, report);
  findTraps(importer, graph, report);
  findUnmappedRestrictions(importer, report);
  auto const byId = [](Way const* a, Way const* b) { return a->id < b->id; };
  std::sort(report.notARoad.begin(), report.notARoad.end(), byId);
  std::sort(report.fewerThanTwoNodes.begin(), report.fewerThanTwoNodes.end(), byId);
  std::sort(report.missingNodes.begin(), report.missingNodes.end(),
            [](auto const& a, auto const& b) { return a.way->id < b.way->id; });
  return report;
}
