#include "export/GmnsMovements.hpp"

#include <cmath>
#include <numbers>

#include "export/NetworkRows.hpp"
#include "export/RestrictionRows.hpp"
#include "export/csv.hpp"

using velora::roadnetwork::DirectionOfTravel;
using velora::roadnetwork::RoadImpl;

namespace {

struct Direction {
  double east;
  double north;
};

// In which the road goes on from the centre line's first point, or last.
Direction directionFrom(RoadEnd const& end) {
  auto const& latitudes = end.road->getCentersX().values();
  auto const& longitudes = end.road->getCentersY().values();
  std::size_t const last = latitudes.size() - 1;
  std::size_t const at = end.isEnd ? last : 0;
  std::size_t const next = end.isEnd ? last - 1 : 1;
  return {std::remainder(longitudes[next] - longitudes[at], 360.0) *
              std::cos(latitudes[at] * std::numbers::pi / 180.0),
          latitudes[next] - latitudes[at]};
}

// One of the types that the standard has.
std::string_view movementType(RestrictionRow const& row) {
  for (auto const& [ending, type] : {std::pair{"left_turn", "left"},
                                     {"right_turn", "right"},
                                     {"straight_on", "thru"},
                                     {"u_turn", "uturn"}}) {
    if (row.kind.ends_with(ending)) return type;
  }
  // "no_entry" and "no_exit" do not say.
  Direction const back = directionFrom(row.restriction.from);
  Direction const on = directionFrom(row.restriction.to);
  double const angle = std::atan2(back.north * on.east - back.east * on.north,
                                  -(back.east * on.east + back.north * on.north));
  constexpr double eighth = std::numbers::pi / 4.0;
  if (std::abs(angle) <= eighth) return "thru";
  if (std::abs(angle) >= 3.9 * eighth) return "uturn";
  return angle > 0.0 ? "left" : "right";
}

bool isAbsolute(RestrictionRow const& row) {
  return row.kind.starts_with("no_") && row.vehicles.empty() && row.condition.empty() &&
         row.except.empty();
}

}  // namespace

void GmnsMovements::write(RoadNetworkImporter const& importer, OutputFolder const& folder) const {
  auto const link = [&](RoadImpl const& road, bool isForward) {
    bool const isSecond = !isForward && road.getDirection() == DirectionOfTravel::both;
    return firstLinks_[road.getID()] + (isSecond ? 1 : 0);
  };
  BufferedFile movements = folder.make(gmnsMovements);
  csv::line(movements, "mvmt_id", "node_id", "ib_link_id", "ob_link_id", "type", "capacity",
            "restriction", "vehicles", "condition", "except", "osm_relation_id", "from_road_id",
            "to_road_id");
  BufferedFile restrictions = folder.make(gmnsRestrictions);
  csv::line(restrictions, "restriction_id", "restriction", "vehicles", "condition", "except",
            "from_road_id", "from_direction", "via_node_ids", "via_road_ids", "to_road_id",
            "to_direction", "osm_relation_id");
  std::int64_t movement = 0;
  std::int64_t number = 0;
  forEachRestriction(importer, [&](RestrictionRow const& row) {
    auto const& [relation, rule, from, viaNodes, viaRoads, to] = row.restriction;
    csv::line(restrictions, ++number, row.kind, row.vehicles, row.condition, row.except,
              from.road->getID(), directionNumber(row.fromIsForward()), idList(viaNodes),
              idList(viaRoads), to.road->getID(), directionNumber(row.toIsForward()), relation);
    if (!viaRoads.empty()) return;
    csv::line(movements, ++movement, viaNodes.front(), link(*from.road, row.fromIsForward()),
              link(*to.road, row.toIsForward()), movementType(row), isAbsolute(row) ? "0" : "NaN",
              row.kind, row.vehicles, row.condition, row.except, relation, from.road->getID(),
              to.road->getID());
  });
  movements.close();
  restrictions.close();
}
