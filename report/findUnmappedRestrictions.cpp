#include "report/fillFinding.hpp"
#include "report/finders.hpp"
#include "turns/mapRestrictions.hpp"

namespace {

// A turn that nobody can make needs no restriction.
bool isWithoutEffect(UnmappedReason reason) {
  return reason == UnmappedReason::againstOneway || reason == UnmappedReason::wayIsNoRoad ||
         reason == UnmappedReason::viaOnNoRoad;
}

}  // namespace

void findUnmappedRestrictions(RoadNetworkImporter const& importer, ImportReport& report) {
  auto const& reader = importer.reader;
  for (UnmappedRestriction const& unmapped : mapRestrictions(importer).unmapped) {
    Finding finding{
        .kind = Finding::Kind::unmappedRestrictions,
        .severity = isWithoutEffect(unmapped.reason) ? Severity::low : Severity::medium,
        .details = {{"relation", unmapped.relation}, {"reason", textOf(unmapped.reason)}}};
    for (auto const id : unmapped.ways) {
      if (auto const* const way = reader.ways.find(id)) {
        addWay(*way, finding);
      } else if (finding.absentWays.size() < namedAtMost) {
        finding.absentWays.push_back(id);
      }
    }
    for (auto const id : unmapped.nodes) {
      if (finding.nodes.size() == namedAtMost) break;
      finding.nodes.push_back(id);
      if (auto const* const place = reader.wayNodes.find(id)) finding.points.push_back(*place);
    }
    report.add(std::move(finding));
  }
}
