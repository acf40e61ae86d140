// Which roads become one, and which of them are one-way, as the caller of an import chooses.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "tags/oneway.hpp"
#include "tests/fixture/Import.hpp"

using testing::ElementsAre;
using velora::roadnetwork::DirectionOfTravel;

TEST(Joining, OfCompatibleRoadsLosesNothing) {
  struct Case {
    char const* one;
    char const* oneTags;
    char const* other;
    char const* otherTags;
    bool isJoined;
  };
  Case const cases[] = {
      {"ab", "", "bc", "", true},
      {"ba", "", "bc", "", true},
      {"ab", "name=A", "bc", "name=A", true},
      {"ab", "name=A", "bc", "name=AB", false},
      {"ab", "name=A", "bc", "", false},
      {"ab", "highway=service", "bc", "highway=road", false},
      {"ab", "lanes=2", "bc", "lanes=2", true},
      {"ab", "lanes=2", "bc", "lanes=1", false},
      {"ab", "lanes=2", "bc", "", false},
      {"ab", "width=2", "bc", "width=3", true},  // not exported
      {"ab", "layer=1", "bc", "layer=1", true},
      {"ab", "layer=1", "bc", "", false},
      {"ab", "layer=0", "bc", "layer=x", true},  // both on the ground, and not exported
      {"ab", "oneway=yes", "bc", "oneway=yes", true},
      {"ab", "oneway=yes", "bc", "oneway=1", true},
      {"ab", "oneway=yes", "cb", "oneway=-1", true},
      {"ba", "oneway=-1", "cb", "oneway=-1", true},
      {"ab", "oneway=yes", "bc", "", false},
      {"ab", "junction=circular", "bc", "oneway=yes", true},
      {"ab", "lanes:forward=2", "bc", "lanes:forward=2", true},
      {"ab", "lanes:forward=2", "cb", "lanes:forward=2", false},
  };
  for (Case const& wanted : cases) {
    Town town("a-b-c");
    town.way(wanted.one, wanted.oneTags).way(wanted.other, wanted.otherTags);
    auto const roads = [&](Joining joining) {
      Import const import(town, {joining, OneWays::implied, {"lanes", "lanes:forward"}});
      return import.network->getRoads().size();
    };
    EXPECT_EQ(roads(Joining::compatible), wanted.isJoined ? 1u : 2u)
        << wanted.one << ' ' << wanted.oneTags << ' ' << wanted.other << ' ' << wanted.otherTags;
    EXPECT_EQ(roads(Joining::all), 1u);
    EXPECT_EQ(roads(Joining::none), 2u);
  }
}

// Ways 2 and 3 are drawn against the road, and way 3 gives it two pieces.
TEST(Joining, TellsThePiecesAlongARoad) {
  Import const import(Town("a-b-c-d-e-f").way("abc").way("dc").way("fed"));
  ASSERT_EQ(import.network->getRoads().size(), 1u);
  std::vector<std::string> pieces;
  forEachPiece(*import.network->getRoads()[0].get(), import.importer, [&](RoadPiece const& piece) {
    pieces.push_back(std::to_string(piece.way->id) + (piece.isReversed ? "<" : ">") +
                     std::to_string(piece.points));
  });
  EXPECT_THAT(pieces, ElementsAre("1>3", "2<2", "3<3"));
}

TEST(OneWays, AreTaggedOrImplied) {
  struct Case {
    char const* tags;
    DirectionOfTravel tagged;
    DirectionOfTravel implied;
  };
  constexpr auto forward = DirectionOfTravel::forward;
  constexpr auto backward = DirectionOfTravel::backward;
  constexpr auto both = DirectionOfTravel::both;
  Case const cases[] = {
      {"oneway=yes", forward, forward},
      {"oneway=-1", backward, backward},
      {"oneway=true", both, forward},
      {"oneway=reverse", both, backward},
      {"oneway=reversible", both, both},
      {"junction=roundabout", both, forward},
      {"junction=circular", both, forward},
      {"junction=jughandle", both, both},
      {"junction=roundabout,oneway=no", both, both},
      {"junction=roundabout,oneway=-1", backward, backward},
      {"highway=motorway", both, forward},
      {"highway=motorway,oneway=no", both, both},
      {"highway=motorway_link", both, both},
  };
  for (auto const& [tags, tagged, implied] : cases) {
    for (auto const& [mode, direction] :
         {std::pair{OneWays::tagged, tagged}, std::pair{OneWays::implied, implied}}) {
      Import const import(Town("a-b").way("ab", tags), {Joining::all, mode, {}});
      EXPECT_EQ(import.network->getRoads().at(0)->getDirection(), direction) << tags;
    }
  }
}
