#include "turns/mapRestrictions.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

#include "importer/RoadNetworkImporter.hpp"
#include "support/IdMap.hpp"
#include "turns/TurnRoute.hpp"
#include "turns/ViaPath.hpp"
#include "turns/WayEnds.hpp"
#include "turns/restrictionRules.hpp"

using OpenStreetMap::ElementType;
using OpenStreetMap::Id;
using OpenStreetMap::Member;
using OpenStreetMap::Relation;
using OpenStreetMap::Way;

namespace {

struct Members {
  Members() = default;
  // Each member once.
  explicit Members(Relation const& relation) {
    std::array<support::IdSet, 4> seen;
    auto const add = [&](std::size_t kind, std::vector<Id>& ids, Id id) {
      if (seen[kind].insert(id).second) ids.push_back(id);
    };
    for (Member const& member : relation.members) {
      bool const isWay = member.type == ElementType::way;
      if (*member.role == u"from" && isWay) {
        add(0, from, member.reference);
      } else if (*member.role == u"to" && isWay) {
        add(1, to, member.reference);
      } else if (*member.role == u"via" && isWay) {
        add(2, viaWays, member.reference);
      } else if (*member.role == u"via" && member.type == ElementType::node) {
        add(3, viaNodes, member.reference);
      }
    }
  }

  std::vector<Id> ways() const {
    std::vector<Id> all = from;
    all.insert(all.end(), viaWays.begin(), viaWays.end());
    all.insert(all.end(), to.begin(), to.end());
    return all;
  }

  std::vector<Id> from;
  std::vector<Id> to;
  std::vector<Id> viaWays;
  std::vector<Id> viaNodes;
};

class Mapper {
 public:
  using Rules = std::vector<std::shared_ptr<RestrictionRule const>>;

  Mapper(RoadNetworkImporter const& importer, WayEnds const& ends)
      : importer_(importer), ends_(ends) {}

  void map(Relation const& relation) {
    Members const members(relation);
    RestrictionRules found = restrictionRules(relation.tags);
    if (found.hasUnknown) refuse(relation, members, UnmappedReason::unknownKind);
    if (found.known.size() > mostRules) return refuse(relation, members, UnmappedReason::tooLarge);
    Rules rules;
    for (RestrictionRule& rule : found.known) {
      rules.push_back(std::make_shared<RestrictionRule const>(std::move(rule)));
    }
    if (rules.empty()) return;
    if (auto const reason = whyOdd(members, rules)) return refuse(relation, members, *reason);
    std::map<UnmappedReason, Members> refused;
    for (Id const from : members.from) {
      for (Id const to : members.to) {
        if (auto const reason = mapTurn(relation, members, from, to, rules)) {
          refused[*reason].from.push_back(from);
          refused[*reason].to.push_back(to);
        }
      }
    }
    for (auto& [reason, turns] : refused) {
      // There are several of one of them at most.
      (members.from.size() == 1 ? turns.from : turns.to).resize(1);
      turns.viaWays = members.viaWays;
      turns.viaNodes = members.viaNodes;
      refuse(relation, turns, reason);
    }
  }

  TurnRestrictions take() { return std::move(result_); }

 private:
  // The way into a road may be closed from several others, and the way out of it to several; every
  // other turn is from one way to one.
  static std::optional<UnmappedReason> whyOdd(Members const& members, Rules const& rules) {
    auto const areAll = [&](std::u16string_view kind) {
      return std::all_of(rules.begin(), rules.end(),
                         [&](auto const& rule) { return rule->kind == kind; });
    };
    if (members.from.empty() || members.to.empty() ||
        (members.viaNodes.empty() && members.viaWays.empty())) {
      return UnmappedReason::wrongMembers;
    }
    bool const isAtNode = members.viaWays.empty();
    if (members.viaNodes.size() > 1 || (!isAtNode && !members.viaNodes.empty()) ||
        (members.from.size() > 1 && !(isAtNode && areAll(u"no_entry"))) ||
        (members.to.size() > 1 && !(isAtNode && areAll(u"no_exit")))) {
      return UnmappedReason::severalMembers;
    }
    if (members.viaWays.size() > mostViaWays) return UnmappedReason::tooLarge;
    return std::nullopt;
  }

  std::optional<UnmappedReason> mapTurn(Relation const& relation, Members const& members, Id from,
                                        Id to, Rules const& rules) {
    auto found = findRoute(members, from, to);
    if (auto const* const reason = std::get_if<UnmappedReason>(&found)) return *reason;
    auto const& route = std::get<TurnRoute>(found);
    for (auto const& rule : rules) {
      result_.mapped.push_back(
          {relation.id, rule, route.from, route.viaNodes, route.viaRoads, route.to});
    }
    return std::nullopt;
  }

  std::variant<TurnRoute, UnmappedReason> findRoute(Members const& members, Id from, Id to) const {
    Way const* const fromWay = importedWay(from);
    Way const* const toWay = importedWay(to);
    if (fromWay == nullptr || toWay == nullptr) return UnmappedReason::wayIsNoRoad;
    if (members.viaWays.empty()) {
      return findTurnRoute(importer_, ends_, from, {members.viaNodes.front(), {}}, to);
    }
    std::vector<Way const*> via;
    for (Id const id : members.viaWays) {
      if (via.emplace_back(importedWay(id)) == nullptr) return UnmappedReason::wayIsNoRoad;
    }
    auto const paths = findViaPaths(*fromWay, via, *toWay, ends_);
    if (auto const* const reason = std::get_if<UnmappedReason>(&paths)) return *reason;
    std::variant<TurnRoute, UnmappedReason> result = UnmappedReason::notConnected;
    for (ViaPath const& path : std::get<std::vector<ViaPath>>(paths)) {
      auto route = findTurnRoute(importer_, ends_, from, path, to);
      bool const isRoute = std::holds_alternative<TurnRoute>(route);
      if (isRoute && std::holds_alternative<TurnRoute>(result)) return UnmappedReason::ambiguous;
      if (isRoute || !std::holds_alternative<TurnRoute>(result)) result = std::move(route);
    }
    return result;
  }

  Way const* importedWay(Id id) const {
    auto const& ways = importer_.selectedWays;
    auto const found = std::lower_bound(ways.begin(), ways.end(), id,
                                        [](Way const* way, Id wanted) { return way->id < wanted; });
    return found != ways.end() && (*found)->id == id ? *found : nullptr;
  }

  void refuse(Relation const& relation, Members const& members, UnmappedReason reason) {
    result_.unmapped.push_back({relation.id, reason, members.ways(), members.viaNodes});
  }

  RoadNetworkImporter const& importer_;
  WayEnds const& ends_;
  TurnRestrictions result_;
};

}  // namespace

TurnRestrictions mapRestrictions(RoadNetworkImporter const& importer) {
  auto const& roads = importer.roadNetwork->getRoads();
  support::Steps steps(importer.progress(), support::Stage::mappingRestrictions,
                       2 * importer.reader.relations.size() + roads.size());
  std::vector<Relation const*> relations;
  support::IdSet ways;
  for (Relation const& relation : importer.reader.relations) {
    steps.step();
    relations.push_back(&relation);
    for (Member const& member : relation.members) {
      if (member.type == ElementType::way) ways.insert(member.reference);
    }
  }
  if (relations.empty()) {
    steps.finish();
    return {};
  }
  std::sort(relations.begin(), relations.end(),
            [](Relation const* a, Relation const* b) { return a->id < b->id; });
  WayEnds const ends(importer, ways, steps);
  Mapper mapper(importer, ends);
  for (Relation const* const relation : relations) {
    mapper.map(*relation);
    steps.step();
  }
  return mapper.take();
}

std::string_view textOf(UnmappedReason reason) {
  switch (reason) {
    case UnmappedReason::unknownKind:
      return "the restriction is of no known kind";
    case UnmappedReason::wrongMembers:
      return "a way from, a node or ways via, or a way to is missing";
    case UnmappedReason::severalMembers:
      return "there are several members where there may be one";
    case UnmappedReason::tooLarge:
      return "there are far more tags, ways or junctions than a restriction needs";
    case UnmappedReason::wayIsNoRoad:
      return "a way is no road, or not in the file";
    case UnmappedReason::viaOnNoRoad:
      return "the node via is on no road, or not in the file";
    case UnmappedReason::viaIsNoJunction:
      return "the node via is no junction of roads";
    case UnmappedReason::viaIsJoined:
      return "the roads were joined into one, on which there is no turn";
    case UnmappedReason::notConnected:
      return "the members are not connected";
    case UnmappedReason::againstOneway:
      return "a one-way road makes the turn impossible already";
    case UnmappedReason::ambiguous:
      return "it could be one of several turns";
    case UnmappedReason::loop:
      return "a road leads back to where it begins";
  }
  return "";
}
