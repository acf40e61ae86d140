// Turn restrictions as the rows of a table, which is how the exchange formats see them.
#pragma once

#include <functional>
#include <string>

#include "turns/TurnRestriction.hpp"

class RoadNetworkImporter;

struct RestrictionRow {
  TurnRestriction const& restriction;
  std::string kind;  ///< this and the other texts: UTF-8 without U+0000
  std::string vehicles;
  std::string condition;
  std::string except;
  double longitude;  ///< of the first Node, as the others
  double latitude;
  double elevation;

  bool fromIsForward() const { return restriction.from.isEnd; }
  bool toIsForward() const { return !restriction.to.isEnd; }
};

/// Calls `action` with a row for each restriction of an importer, which must have run. A row holds
/// during the call.
void forEachRestriction(RoadNetworkImporter const& importer,
                        std::function<void(RestrictionRow const&)> const& action);

/// The direction in which a road is travelled, in numbers as its own direction.
inline int directionNumber(bool isForward) {
  return isForward ? 1 : 2;
}

/// The columns as the members of a JSON object.
template <class Json>
void writeMembers(Json& json, RestrictionRow const& row) {
  auto const text = [&](char const* name, std::string const& value) {
    json.member(name);
    value.empty() ? json.null() : json.text(value);
  };
  TurnRestriction const& restriction = row.restriction;
  text("restriction", row.kind);
  text("vehicles", row.vehicles);
  text("condition", row.condition);
  text("except", row.except);
  json.member("from_road_id").integer(restriction.from.road->getID());
  json.member("from_direction").integer(directionNumber(row.fromIsForward()));
  json.member("via_node_ids").integers(restriction.viaNodes);
  json.member("via_road_ids").integers(restriction.viaRoads);
  json.member("to_road_id").integer(restriction.to.road->getID());
  json.member("to_direction").integer(directionNumber(row.toIsForward()));
  json.member("osm_relation_id").integer(restriction.relation);
}
