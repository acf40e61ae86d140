#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "report/fillFinding.hpp"
#include "report/finders.hpp"
#include "support/IdMap.hpp"
#include "tags/oneway.hpp"

using OpenStreetMap::Way;
using velora::roadnetwork::DirectionOfTravel;
using velora::roadnetwork::Road;

namespace {

std::u16string_view nameOf(Way const& way) {
  auto const found = way.tags.find(u"name");
  return found == way.tags.end() ? std::u16string_view() : std::u16string_view(found->second);
}

DirectionOfTravel directionOf(RoadPiece const& piece, OneWays oneWays) {
  DirectionOfTravel const direction = wayDirection(piece.way->tags, oneWays);
  return piece.isReversed ? reversed(direction) : direction;
}

void addLosses(Road const& road, RoadNetworkImporter const& importer, Finding& finding) {
  auto const latitudes = road->getCentersX().values();
  auto const longitudes = road->getCentersY().values();
  std::size_t first = 0;
  forEachPiece(*road.get(), importer, [&](RoadPiece const& piece) {
    if (directionOf(piece, importer.options.oneWays) != road->getDirection()) {
      addWay(*piece.way, finding);
      finding.stretches.push_back(
          {latitudes.subspan(first, piece.points), longitudes.subspan(first, piece.points)});
    }
    first += piece.points - 1;
  });
}

}  // namespace

void findLossyJoins(RoadNetworkImporter const& importer, ImportReport& report) {
  OneWays const oneWays = importer.options.oneWays;
  std::vector<RoadJoin const*> lossy;
  support::ModelIdMap<std::vector<OpenStreetMap::Id>> losers;  // the nodes, by road
  auto const& roads = importer.roadNetwork->getRoads();
  support::Steps steps(importer.progress(), support::Stage::checkingJoins,
                       importer.joins.size() + roads.size());
  for (RoadJoin const& join : importer.joins) {
    steps.step();
    Way const& one = importer.reader.ways.at(join.ways[0]);
    Way const& other = importer.reader.ways.at(join.ways[1]);
    if (nameOf(one) != nameOf(other)) lossy.push_back(&join);
    DirectionOfTravel const direction = wayDirection(other.tags, oneWays);
    if (wayDirection(one.tags, oneWays) == (join.turned ? reversed(direction) : direction)) {
      continue;
    }
    losers.try_emplace(join.road).first.value().push_back(join.node);
  }
  std::sort(lossy.begin(), lossy.end(), steps.polling([](RoadJoin const* a, RoadJoin const* b) {
    return std::pair(a->road, a->node) < std::pair(b->road, b->node);
  }));
  for (RoadJoin const* const join : lossy) {
    steps.poll();
    Way const& one = importer.reader.ways.at(join->ways[0]);
    Way const& other = importer.reader.ways.at(join->ways[1]);
    bool const hasNone = nameOf(one).empty() || nameOf(other).empty();
    report.add({.kind = hasNone ? Finding::Kind::nameAndNone : Finding::Kind::differentNames,
                .severity = Severity::low,
                .ways = {&one, &other},
                .nodes = {join->node},
                .roads = {join->road},
                .points = {*importer.reader.wayNodes.find(join->node)}});
  }
  if (losers.empty()) return steps.finish();
  std::vector<Finding> dropped;
  for (Road const& road : roads) {
    steps.step();
    auto const found = losers.find(road->getID());
    if (found == losers.end()) continue;
    Finding finding{.kind = Finding::Kind::droppedDirections,
                    .severity = Severity::high,
                    .nodes = std::move(found.value()),
                    .roads = {road->getID()},
                    .details = {{"direction", static_cast<std::int64_t>(road->getDirection())}}};
    std::sort(finding.nodes.begin(), finding.nodes.end());
    if (finding.nodes.size() > namedAtMost) finding.nodes.resize(namedAtMost);
    addLosses(road, importer, finding);
    dropped.push_back(std::move(finding));
  }
  std::sort(dropped.begin(), dropped.end(),
            [](Finding const& a, Finding const& b) { return a.roads.front() < b.roads.front(); });
  for (Finding& finding : dropped) report.add(std::move(finding));
}
