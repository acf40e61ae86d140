#include "report/finders.hpp"
#include "tags/layer.hpp"
#include "tags/oneway.hpp"

void findOddTags(RoadNetworkImporter const& importer, ImportReport& report) {
  OneWays const oneWays = importer.options.oneWays;
  support::Steps steps(importer.progress(), support::Stage::checkingTags,
                       importer.selectedWays.size());
  for (OpenStreetMap::Way const* const way : importer.selectedWays) {
    steps.step();
    auto const add = [&](Finding::Kind kind, Severity severity) {
      report.add({.kind = kind, .severity = severity, .ways = {way}});
    };
    auto const& tags = way->tags;
    if (oneWays == OneWays::tagged && impliesOneway(tags)) {
      add(Finding::Kind::impliedOneway, Severity::high);
    }
    if (hasUnknownOneway(tags, oneWays)) add(Finding::Kind::unknownOneway, Severity::medium);
    if (hasOddLayer(tags)) add(Finding::Kind::oddLayers, Severity::medium);
    if (isLevelBridge(tags)) add(Finding::Kind::levelBridges, Severity::medium);
    if (tags.has(u"area", u"yes")) add(Finding::Kind::areas, Severity::medium);
  }
}
