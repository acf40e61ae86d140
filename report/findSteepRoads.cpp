#include <algorithm>
#include <cmath>

#include "importer/walk.hpp"
#include "report/fillFinding.hpp"
#include "report/finders.hpp"
#include "report/lineLength.hpp"

using velora::roadnetwork::Road;

namespace {

constexpr double steep = 0.15;

}  // namespace

void findSteepRoads(RoadNetworkImporter const& importer, ImportReport& report) {
  std::vector<Finding> found;
  auto const& network = importer.roadNetwork;
  support::Steps steps(importer.progress(), support::Stage::checkingSlopes,
                       network->getRoads().size());
  forEachRoad(*network.get(), steps, [&](Road const& road) {
    auto const elevations = road->getRoadSegments()[0]->getElevations().values();
    auto const latitudes = road->getCentersX().values();
    auto const longitudes = road->getCentersY().values();
    double steepest = 0.0;
    std::vector<Finding::Stretch> stretches;
    std::size_t first = 0;  // of the steep stretch that ends at point i - 1, if there is one
    bool wasSteep = false;
    auto const endStretch = [&](std::size_t last) {
      if (wasSteep) {
        stretches.push_back({latitudes.subspan(first, last - first + 1),
                             longitudes.subspan(first, last - first + 1)});
      }
      wasSteep = false;
    };
    for (std::size_t i = 1; i < elevations.size(); ++i) {
      double const rise = std::abs(elevations[i] - elevations[i - 1]);
      // Written so that what is not a number is not steep. Without a length there is no gradient.
      double const length =
          rise > 0.0 && std::isfinite(rise)
              ? distance(latitudes[i - 1], longitudes[i - 1], latitudes[i], longitudes[i])
              : 0.0;
      if (length > 0.0 && rise > steep * length) {
        if (!wasSteep) first = i - 1;
        wasSteep = true;
        steepest = std::max(steepest, rise / length);
      } else {
        endStretch(i - 1);
      }
    }
    if (!elevations.empty()) endStretch(elevations.size() - 1);
    if (stretches.empty()) return;
    Finding finding{.kind = Finding::Kind::steep,
                    .severity = Severity::low,
                    .roads = {road->getID()},
                    .details = {{"percent", 100.0 * steepest}},
                    .stretches = std::move(stretches)};
    addWaysOf(*road.get(), importer, finding);
    found.push_back(std::move(finding));
  });
  std::sort(found.begin(), found.end(),
            [](Finding const& a, Finding const& b) { return a.roads.front() < b.roads.front(); });
  for (Finding& finding : found) report.add(std::move(finding));
}
