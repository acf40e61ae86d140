#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include "report/finders.hpp"
#include "report/forEachLineCrossing.hpp"
#include "tags/layer.hpp"

using OpenStreetMap::Way;
using velora::roadnetwork::RoadImpl;

namespace {

constexpr double tooClose = 3.0;  // metres in height, below which two roads are on one level
constexpr double lorry = 4.5;     // fits under a bridge as high as that

double elevationAt(RoadImpl const& road, LineCrossing::Place const& place) {
  auto const elevations = road.getRoadSegments()[0]->getElevations().values();
  return std::lerp(elevations[place.segment], elevations[place.segment + 1], place.share);
}

Way const* wayAt(RoadImpl const& road, std::size_t segment, RoadNetworkImporter const& importer) {
  Way const* found = nullptr;
  std::size_t end = 0;
  forEachPiece(road, importer, [&](RoadPiece const& piece) {
    end += piece.points - 1;
    if (found == nullptr && segment < end) found = piece.way;
  });
  return found;
}

// What is wrong is the map where it has the two on one level. Where it has not, the heights of the
// network are too flat for it, which hardly matters.
Severity severityOf(Finding::Kind kind, Way const& one, Way const& other) {
  double const apart = std::abs(wayLayerElevation(one.tags) - wayLayerElevation(other.tags));
  if (kind == Finding::Kind::lowClearance) return apart < lorry ? Severity::medium : Severity::low;
  if (apart >= tooClose) return Severity::low;
  // A bridge without a layer is no missing junction.
  bool const isBridge = isBridgeOrTunnel(one.tags) || isBridgeOrTunnel(other.tags);
  return isBridge ? Severity::medium : Severity::high;
}

}  // namespace

void findCrossings(RoadNetworkImporter const& importer, RoadGraph const& graph,
                   ImportReport& report) {
  auto const& roads = importer.roadNetwork->getRoads();
  struct Crossing {
    RoadImpl const* one;  // of the lower id
    RoadImpl const* other;
    LineCrossing::Place onOne;
    LineCrossing::Place onOther;
    Finding::Position position;
    double apart;

    // One place comes out of different segments with different last bits.
    auto place() const {
      auto const rounded = [](double degrees) { return std::llround(degrees * 1e9); };
      return std::tuple(one->getID(), other->getID(), rounded(position.latitude),
                        rounded(position.longitude));
    }
  };
  std::vector<Crossing> crossings;
  auto const add = [&](LineCrossing const& found) {
    Crossing crossing{roads[found.one.road].get(),
                      roads[found.other.road].get(),
                      found.one,
                      found.other,
                      found.position,
                      0.0};
    if (crossing.other->getID() < crossing.one->getID()) {
      std::swap(crossing.one, crossing.other);
      std::swap(crossing.onOne, crossing.onOther);
    }
    crossing.apart = std::abs(elevationAt(*crossing.one, crossing.onOne) -
                              elevationAt(*crossing.other, crossing.onOther));
    if (crossing.apart < lorry) crossings.push_back(crossing);
  };
  report.crossingsAreAll = forEachLineCrossing(importer, graph, add);
  // At a point of a line two of its segments cross the other, and there may be more finds of one.
  support::Steps steps(importer.progress(), support::Stage::checkingCrossings, crossings.size());
  std::sort(
      crossings.begin(), crossings.end(), steps.polling([](Crossing const& a, Crossing const& b) {
        return std::tuple_cat(a.place(), std::tuple(a.apart, a.onOne.segment, a.onOther.segment)) <
               std::tuple_cat(b.place(), std::tuple(b.apart, b.onOne.segment, b.onOther.segment));
      }));
  crossings.erase(std::unique(crossings.begin(), crossings.end(),
                              [](auto const& a, auto const& b) { return a.place() == b.place(); }),
                  crossings.end());
  for (Crossing const& crossing : crossings) {
    steps.step();
    Way const* const one = wayAt(*crossing.one, crossing.onOne.segment, importer);
    Way const* const other = wayAt(*crossing.other, crossing.onOther.segment, importer);
    auto const kind =
        crossing.apart < tooClose ? Finding::Kind::crossings : Finding::Kind::lowClearance;
    report.add({.kind = kind,
                .severity = severityOf(kind, *one, *other),
                .ways = {one, other},
                .roads = {crossing.one->getID(), crossing.other->getID()},
                .points = {crossing.position},
                .metres = crossing.apart});
  }
  steps.finish();
}
