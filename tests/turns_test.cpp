// Turn restrictions, from relations to roads.
#include <gmock/gmock.h>

#include <sstream>
#include <string>

#include "support/ustring.hpp"
#include "tests/fixture/Import.hpp"
#include "turns/ViaPath.hpp"
#include "turns/mapRestrictions.hpp"
#include "turns/restrictionRules.hpp"

namespace {

char letter(support::ModelId node) {
  return static_cast<char>('a' + node - 1);
}

char farLetter(RoadEnd const& end) {
  return letter((end.isEnd ? end.road->getStartNode() : end.road->getEndNode())->getID());
}

// The Nodes from the far end of the first road to that of the last: "no_left_turn a-b-d".
std::string text(TurnRestriction const& turn) {
  RestrictionRule const& rule = *turn.rule;
  std::string result = support::ustring_to_utf8(rule.kind) + ' ' + farLetter(turn.from);
  for (OpenStreetMap::Id const node : turn.viaNodes) {
    (result += '-') += letter(OpenStreetMap::modelId(node));
  }
  (result += '-') += farLetter(turn.to);
  EXPECT_EQ(turn.viaRoads.size() + 1, turn.viaNodes.size());
  for (auto const& [name, value] :
       {std::pair{" for ", &rule.vehicles}, {" when ", &rule.condition}, {" but ", &rule.except}}) {
    if (!value->empty()) result += name + support::ustring_to_utf8(*value);
  }
  return result;
}

std::string mapped(Town const& town, Joining joining = Joining::compatible) {
  Import const import(town, {joining, OneWays::implied, {}, {}, true});
  TurnRestrictions const turns = mapRestrictions(import.importer);
  std::string result;
  for (auto const& turn : turns.mapped) (result += result.empty() ? "" : ", ") += text(turn);
  for (auto const& turn : turns.unmapped) {
    (result += result.empty() ? "" : ", ") += textOf(turn.reason);
  }
  return result;
}

// Ways with spaces between them, each with its tags behind a "!".
Town townOf(std::string const& ways) {
  Town town(R"(
    a-b-c-d-e
      |   |
      f   g
  )");
  std::istringstream list(ways);
  for (std::string way; list >> way;) {
    std::size_t const mark = way.find('!');
    town.way(way.substr(0, mark), mark == way.npos ? "" : way.substr(mark + 1));
  }
  return town;
}

constexpr char missing[] = "a way from, a node or ways via, or a way to is missing";
constexpr char several[] = "there are several members where there may be one";
constexpr char noRoad[] = "a way is no road, or not in the file";
constexpr char joined[] = "the roads were joined into one, on which there is no turn";
constexpr char apart[] = "the members are not connected";
constexpr char oneway[] = "a one-way road makes the turn impossible already";
constexpr char ambiguous[] = "it could be one of several turns";
constexpr char loop[] = "a road leads back to where it begins";
constexpr char unknown[] = "the restriction is of no known kind";
constexpr char large[] = "there are far more tags, ways or junctions than a restriction needs";

}  // namespace

TEST(Turns, FindTheirRoads) {
  struct Case {
    char const* ways;
    char const* members;
    std::string found;
    char const* kind = "no_left_turn";
  };
  Case const cases[] = {
      {"ab bc bf", "from:1 via:b to:3", "no_left_turn a-b-f"},
      {"ba bc fb", "to:3 via:b from:1 location_hint:a", "no_left_turn a-b-f"},
      {"ab bc bf", "from:1 via:b to:1", "no_u_turn a-b-a", "no_u_turn"},
      {"ab bc bf", "from:1 via:b to:2", "only_straight_on a-b-c", "only_straight_on"},
      // A way that goes through.
      {"abc!oneway=yes bf", "from:1 via:b to:2", "no_left_turn a-b-f"},
      {"abc!oneway=-1 bf", "from:1 via:b to:2", "no_left_turn c-b-f"},
      {"abc!oneway=yes bf", "from:2 via:b to:1", "no_left_turn f-b-c"},
      {"abc bf", "from:1 via:b to:2", ambiguous},
      {"abc bf", "from:2 via:b to:1", ambiguous},
      {"ab!oneway=-1 bc bf", "from:1 via:b to:3", oneway},
      {"ab bc bf!oneway=-1", "from:1 via:b to:3", oneway},
      // Members.
      {"ab bc bf", "from:1 via:b", missing},
      {"ab bc bf", "from:1 to:3", missing},
      {"ab bc bf", "from:a via:b to:3", missing},
      {"ab bc bf", "from:1 via:b via:a to:3", several},
      {"ab bc bf", "from:1 via:b via:2 to:3", several},
      {"ab bc bf", "from:1 from:2 via:b to:3", several},
      {"ab bc bf", "from:1 from:2 via:b to:3", "no_entry a-b-f, no_entry c-b-f", "no_entry"},
      {"ab bc bf", "from:1 via:b to:2 to:9", std::string("no_exit a-b-c, ") + noRoad, "no_exit"},
      {"ab bc bf", "from:1 via:b to:2 to:3", several, "no_entry"},
      {"ab bc bf bg!highway=path", "from:1 via:b to:4", noRoad},
      {"ab bc bf", "from:1 via:z to:3", "the node via is on no road, or not in the file"},
      {"abc bf", "from:1 via:c to:2", apart},
      {"abc cd cg", "from:1 via:b to:1", "the node via is no junction of roads"},
      {"ab bgfb", "from:1 via:b to:2", loop},
      {"ab bgfb", "from:2 via:b to:1", loop},
      {"ab bgfb!oneway=yes", "from:2 via:b to:1", "no_left_turn b-b-a"},
      // Over ways.
      {"ab bc cd bf cg", "from:1 via:2 to:3", "no_left_turn a-b-c-d"},
      {"ab cb cd bf cg", "from:5 via:2 to:4", "no_left_turn g-c-b-f"},
      {"ab bc cd de bf cg dg", "from:1 via:3 via:2 to:4", "no_left_turn a-b-c-d-e"},
      {"ab bcd de bf cg dg", "from:1 via:2 to:3", "no_left_turn a-b-c-d-e"},
      {"ab bc cd bf cg", "from:1 via:2 to:9", noRoad},
      {"ab bc cd de bf cg dg", "from:1 via:3 to:4", apart},
      {"ab bc cd de bf cg dg", "from:1 via:2 to:4", apart},
      {"ab bc cd de cg bf", "from:1 via:2 via:3 via:5 to:4", ambiguous},
      {"ab bcgcd de bf", "from:1 via:2 to:3", ambiguous},
      {"ab bc!oneway=-1 cd bf cg", "from:1 via:2 to:3", oneway},
      {"ab bgfb bc", "from:1 via:2 to:3", loop},
      {"ab bc bc cd", "from:2 via:3 to:2", ambiguous},
      {"ab bc bc!oneway=yes cd", "from:2 via:3 to:2", "no_left_turn c-b-c-b"},
  };
  for (Case const& wanted : cases) {
    Town town = townOf(wanted.ways);
    town.restriction(wanted.members, std::string("restriction=") + wanted.kind);
    EXPECT_EQ(mapped(town), wanted.found) << wanted.ways << ' ' << wanted.members;
  }
  // Where roads may be joined at its Nodes: to what comes before, to what comes after, to both.
  Case const joinedCases[] = {
      {"ab bc", "from:1 via:b to:2", joined},
      {"ab bc cd cg", "from:1 via:2 to:3", "no_left_turn a-c-d"},
      {"ab bc cd bf", "from:1 via:2 to:3", "no_left_turn a-b-d"},
      {"ab bc cd", "from:1 via:2 to:3", joined},
  };
  for (Case const& wanted : joinedCases) {
    Town const town = townOf(wanted.ways).restriction(wanted.members, "restriction=no_left_turn");
    EXPECT_EQ(mapped(town, Joining::all), wanted.found) << wanted.ways << ' ' << wanted.members;
    EXPECT_THAT(mapped(town), testing::StartsWith("no_left_turn a-b-c")) << wanted.ways;
  }
  Town const town = townOf("ab bc").restriction("from:1 via:b to:2", "restriction=no_exit");
  EXPECT_EQ(mapped(town, Joining::none), "no_exit a-b-c");
}

TEST(Turns, SayWhatTheirTagsSay) {
  struct Case {
    char const* tags;
    std::string rules;
  };
  Case const cases[] = {
      {"restriction=no_exit,except=psv;bicycle", "no_exit a-b-f but psv;bicycle"},
      {"restriction:hgv=no_u_turn", "no_u_turn a-b-f for hgv"},
      {"type=restriction:bus,restriction=no_u_turn", "no_u_turn a-b-f for bus"},
      {"restriction:conditional=no_exit @ (Mo 07:00-09:00; Su); only_u_turn @ wet",
       "no_exit a-b-f when (Mo 07:00-09:00; Su), only_u_turn a-b-f when wet"},
      {"restriction:hgv:conditional=no_entry@(Su)", "no_entry a-b-f for hgv when (Su)"},
      {"restriction=no_entry,hour_on=07:00,hour_off=09:00",
       "no_entry a-b-f when hour_on=07:00; hour_off=09:00"},
      {"restriction=no_exit,restriction:conditional=none @ (Su)",
       std::string("no_exit a-b-f, ") + unknown},
      {"restriction=no_exit,restriction:hgv=no_entry", "no_exit a-b-f, no_entry a-b-f for hgv"},
      {"restriction=no_parking", unknown},
      {"name=No restriction", unknown},
      {"type=route,restriction=no_exit", ""},
      {"type=restrictions,restriction=no_exit", ""},
  };
  for (Case const& wanted : cases) {
    Town town = townOf("ab bc bf");
    EXPECT_EQ(mapped(town.restriction("from:1 via:b to:3", wanted.tags)), wanted.rules)
        << wanted.tags;
  }
}

// What nobody has put together with care takes neither long nor much.
TEST(Turns, HaveLimits) {
  std::string rules;
  for (std::size_t i = 0; i <= mostRules; ++i) {
    rules += "restriction:" + std::to_string(i) + "=no_exit,";
  }
  EXPECT_EQ(mapped(townOf("ab bc bf").restriction("from:1 via:b to:3", rules)), large);
  std::string members = "from:1 to:3";
  for (std::size_t i = 0; i <= mostViaWays; ++i) members += " via:" + std::to_string(i + 4);
  EXPECT_EQ(mapped(townOf("ab bc cd").restriction(members, "restriction=no_exit")), large);
}
