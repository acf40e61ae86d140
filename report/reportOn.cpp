#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "report/ImportReport.hpp"
#include "tags/highway.hpp"
#include "tags/layer.hpp"
#include "tags/oneway.hpp"

using OpenStreetMap::Way;
using velora::roadnetwork::DirectionOfTravel;

namespace {

constexpr std::size_t firstIds = 10;

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
    if (missing.first.size() < firstIds) missing.first.push_back(way.nodeReferences[i]);
  }
  if (missing.count > 0) {
    report.missingNodes.push_back(std::move(missing));
  } else if (way.nodeReferences.size() < 2) {
    report.fewerThanTwoNodes.push_back(&way);
  } else {
    ++report.importedWays;
  }
}

void checkTags(Way const& way, OneWays oneWays, ImportReport& report) {
  if (oneWays == OneWays::tagged && impliesOneway(way.tags)) report.impliedOneway.push_back(&way);
  if (hasUnknownOneway(way.tags, oneWays)) report.unknownOneway.push_back(&way);
  if (hasOddLayer(way.tags)) report.oddLayers.push_back(&way);
  if (isLevelBridge(way.tags)) report.levelBridges.push_back(&way);
}

void findSharedNodes(RoadNetworkImporter const& importer, ImportReport& report) {
  using Number = OpenStreetMap::WayNodes::Number;
  constexpr Number none = OpenStreetMap::WayNodes::none;
  auto const& nodes = importer.reader.wayNodes;
  auto const& ways = importer.selectedWays;
  std::vector<Number> firstUses(nodes.size(), none);  // as indices into the ways
  std::vector<double> elevations;
  for (Number way = 0; way < ways.size(); ++way) {
    elevations.push_back(wayLayerElevation(ways[way]->tags));
    auto const numbers = nodes.numbersOf(*ways[way]);
    for (std::size_t i = 1; i + 1 < numbers.size(); ++i) {
      Number& first = firstUses[numbers[i]];
      if (first == none) first = way;
      if (elevations[first] == elevations[way]) continue;
      report.sharedNodes.push_back({ways[way]->nodeReferences[i], ways[first], ways[way]});
    }
  }
}

std::u16string_view nameOf(Way const& way) {
  auto const found = way.tags.find(u"name");
  return found == way.tags.end() ? std::u16string_view() : std::u16string_view(found->second);
}

void checkJoin(RoadNetworkImporter const& importer, RoadJoin const& join, ImportReport& report) {
  Way const& one = importer.reader.ways.at(join.ways[0]);
  Way const& other = importer.reader.ways.at(join.ways[1]);
  ImportReport::Join const entry{join.road, &one, &other, join.node};
  if (nameOf(one) != nameOf(other)) report.differentNames.push_back(entry);
  OneWays const oneWays = importer.options.oneWays;
  DirectionOfTravel const direction = wayDirection(other.tags, oneWays);
  if (wayDirection(one.tags, oneWays) != (join.turned ? reversed(direction) : direction)) {
    report.droppedDirections.push_back(entry);
  }
}

}  // namespace

ImportReport reportOn(RoadNetworkImporter const& importer) {
  ImportReport report;
  for (Way const& way : importer.reader.ways) accountForWay(importer, way, report);
  for (Way const* const way : importer.selectedWays)
    checkTags(*way, importer.options.oneWays, report);
  findSharedNodes(importer, report);
  for (RoadJoin const& join : importer.joins) checkJoin(importer, join, report);
  for (auto* const joins : {&report.droppedDirections, &report.differentNames}) {
    std::sort(joins->begin(), joins->end(), [](auto const& a, auto const& b) {
      return std::pair(a.road, a.node) < std::pair(b.road, b.node);
    });
  }
  auto const byId = [](Way const* a, Way const* b) { return a->id < b->id; };
  std::sort(report.notARoad.begin(), report.notARoad.end(), byId);
  std::sort(report.fewerThanTwoNodes.begin(), report.fewerThanTwoNodes.end(), byId);
  std::sort(report.missingNodes.begin(), report.missingNodes.end(),
            [](auto const& a, auto const& b) { return a.way->id < b.way->id; });
  return report;
}
