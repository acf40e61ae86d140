#include "export/RestrictionRows.hpp"

#include "export/NetworkRows.hpp"
#include "importer/RoadNetworkImporter.hpp"
#include "turns/mapRestrictions.hpp"

void forEachRestriction(RoadNetworkImporter const& importer,
                        std::function<void(RestrictionRow const&)> const& action) {
  TurnRestrictions const restrictions = mapRestrictions(importer);
  auto const& nodes = importer.roadNetwork->getNodes();
  support::Steps steps(importer.progress(), support::Stage::writingRestrictions,
                       restrictions.mapped.size());
  for (TurnRestriction const& restriction : restrictions.mapped) {
    RestrictionRule const& rule = *restriction.rule;
    auto const node = nodes.find(OpenStreetMap::modelId(restriction.viaNodes.front()));
    NodeRow const place = nodeRow(node->second);
    action({restriction, exchangeable(rule.kind), exchangeable(rule.vehicles),
            exchangeable(rule.condition), exchangeable(rule.except), place.longitude,
            place.latitude, place.elevation});
    steps.step();
  }
}
