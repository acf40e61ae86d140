// Turn restrictions, as they apply to the roads of a network.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "model/roadnetwork/Road.hpp"
#include "osm/records.hpp"
#include "support/ModelId.hpp"

/// What a restriction says, whatever roads it is about.
struct RestrictionRule {
  std::u16string kind;       ///< as tagged: no_left_turn, only_straight_on, ...
  std::u16string vehicles;   ///< whom it is for, as in OSM keys: hgv, ...; empty for all
  std::u16string condition;  ///< when it holds, as tagged: (Mo-Fr 07:00-09:00); empty for always
  std::u16string except;     ///< whom it is not for, as tagged: bicycle;psv; empty for nobody
};

/// One of the two ends of a road.
struct RoadEnd {
  velora::roadnetwork::RoadImpl const* road = nullptr;
  bool isEnd = false;  ///< or the start
};

/// Who comes from one road must not go on to another, or, if the kind begins with "only", must not
/// go on to any other.
struct TurnRestriction {
  OpenStreetMap::Id relation;
  std::shared_ptr<RestrictionRule const> rule;
  RoadEnd from;                             ///< arrives at the first Node by this end
  std::vector<OpenStreetMap::Id> viaNodes;  ///< in the order of travel; at least one
  std::vector<support::ModelId> viaRoads;   ///< between one Node and the next
  RoadEnd to;                               ///< leaves the last Node by this end
};

enum class UnmappedReason {
  unknownKind,
  wrongMembers,
  severalMembers,
  tooLarge,
  wayIsNoRoad,
  viaOnNoRoad,
  viaIsNoJunction,
  viaIsJoined,
  notConnected,
  againstOneway,
  ambiguous,
  loop,
};

/// In plain English, without a full stop.
std::string_view textOf(UnmappedReason reason);

/// A relation, or what one of its tags or some of its members say, that has no place in the
/// network.
struct UnmappedRestriction {
  OpenStreetMap::Id relation;
  UnmappedReason reason;
  std::vector<OpenStreetMap::Id> ways;  ///< the members that it is about, also if the file has none
  std::vector<OpenStreetMap::Id> nodes;  ///< of these ids
};

/// Both by ascending id of the relation, then in the order of its tags and members.
struct TurnRestrictions {
  std::vector<TurnRestriction> mapped;
  std::vector<UnmappedRestriction> unmapped;
};
