// The stages of the import, on small towns that go through the real reader.
#include <gmock/gmock.h>

#include <limits>
#include <numeric>
#include <random>
#include <sstream>

#include "graph/JoinedName.hpp"
#include "importer/geographicLimits.hpp"
#include "segments/elevationProfile.hpp"
#include "support/ustring.hpp"
#include "tags/layer.hpp"
#include "tags/name.hpp"
#include "tests/fixture/Import.hpp"

using testing::ElementsAre;

namespace {

using Doubles = std::vector<double>;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// NaN equals NaN.
testing::Matcher<double> is(double expected) {
  return testing::NanSensitiveDoubleEq(expected);
}

std::vector<std::string> split(std::string const& text) {
  std::vector<std::string> parts;
  std::istringstream list(text);
  for (std::string part; std::getline(list, part, '|');) parts.push_back(part);
  return parts;
}

// Adds ways that are given as "abc oneway=yes,layer=1|cd|ad".
Town& addWays(Town& town, std::string const& ways) {
  for (std::string const& way : split(ways)) {
    auto const space = std::min(way.find(' '), way.size());
    town.way(way.substr(0, space), way.substr(std::min(space + 1, way.size())));
  }
  return town;
}

// The roads by id, as "abc forward High Street|cd both 2".
std::string briefRoads(Import const& import, Town const& town) {
  std::string all;
  for (std::string line : import.roads(town)) {
    line = line.substr(line.find(' ') + 1, line.find("\" weight") - line.find(' ') - 1);
    all += (all.empty() ? "" : "|") + line.erase(line.find('"'), 1);
  }
  return all;
}

std::vector<OpenStreetMap::Id> selectedIds(Import const& import) {
  std::vector<OpenStreetMap::Id> ids;
  for (auto const* way : import.importer().selectedWays) ids.push_back(way->id);
  return ids;
}

Doubles elevations(Import const& import, unsigned long road) {
  auto const& values = import.road(road)->getRoadSegments()[0]->getElevations();
  return {values.begin(), values.end()};
}

}  // namespace

TEST(SelectHighwayWays, KeepsExactlyTheRoadValues) {
  std::string const roads =
      "motorway|trunk|primary|secondary|tertiary|unclassified|residential|motorway_link|trunk_link|"
      "primary_link|secondary_link|tertiary_link|living_street|service|raceway|road";
  std::string const others =
      "path|track|footway|cycleway|pedestrian|steps||Motorway|motorway | motorway|proposed|roads|"
      "motorway;primary";
  Town town("a-b");
  std::vector<OpenStreetMap::Id> expected;
  for (auto const& value : split(roads)) {
    town.way("ab", "highway=" + value);
    expected.push_back(static_cast<OpenStreetMap::Id>(expected.size() + 1));
  }
  for (auto const& value : split(others)) town.way("ab", "highway=" + value);
  town.way(99, "ab", "highway=residential,area=yes");
  expected.push_back(99);
  Import const import(town);
  EXPECT_EQ(selectedIds(import), expected);
  EXPECT_EQ(import.importer().selectedWays.capacity(), expected.size());
}

TEST(SelectHighwayWays, NeedsAllNodesAndAtLeastTwoReferences) {
  Town town("a-b-c");
  town.way(7, "abc").way(-3, "ab").way(5, "a").way(6, "").way(4, "abz").way(3, "zab").way(2, "aa");
  town.way(-9, "aba").way(9, "azb");
  EXPECT_THAT(selectedIds(Import(town)), ElementsAre(-9, -3, 2, 7));
}

TEST(CreateNodesAndRoads, NumbersRoadsByWayIdAndNamesNodesById) {
  Town town("a-b-c-f\n ded");
  town.way(30, "abc").way(20, "bd").way(-1, "be").way(40, "cf", "name=x");
  Import const import(town);
  // clang-format off
  EXPECT_THAT(import.roads(town), ElementsAre("1: be both \"-1\" weight 1 ways -1",
                                              "2: bd both \"20\" weight 1 ways 20",
                                              "3: ab both \"30\" weight 1 ways 30",
                                              "4: bcf both \"30-x\" weight 2 ways 30 40"));
  // clang-format on
  EXPECT_EQ(import.node('b')->getName(), u"2");
  EXPECT_THAT(import.node('b')->getPosition(), ElementsAre(48.0, 11.002, 0.0));
  EXPECT_EQ(wayName(std::numeric_limits<long>::min(), {}), u"-9223372036854775808");
}

TEST(Roads, AreCutAtJunctionsAndJoinedIntoChains) {
  struct Case {
    char const* ways;
    char const* nodes;
    char const* roads;
  };
  // clang-format off
  Case const cases[] = {
      // Names and directions of ways.
      {"ab", "ab", "ab both 1"},                      {"ab name=", "ab", "ab both "},
      {"ab name= A  b ", "ab", "ab both  A  b "},     {"ab Name=x,ref=B 1", "ab", "ab both 1"},
      {"ab oneway=yes", "ab", "ab forward 1"},        {"ab oneway=1", "ab", "ab forward 1"},
      {"ab oneway=-1", "ab", "ab backward 1"},        {"ab oneway=no", "ab", "ab both 1"},
      {"ab oneway=", "ab", "ab both 1"},              {"ab oneway=YES", "ab", "ab both 1"},
      {"ab oneway=yes ", "ab", "ab both 1"},          {"ab oneway=true", "ab", "ab both 1"},
      {"ab oneway=reversible", "ab", "ab both 1"},    {"ab junction=roundabout", "ab", "ab both 1"},
      // Cut at the inner junctions.
      {"", "", ""},
      {"abcd", "ad", "abcd both 1"},
      {"abc|dbe", "abcde", "ab both 1|bc both 1|db both 2|be both 2"},
      {"abc|bd", "abcd", "ab both 1|bc both 1|bd both 2"},
      {"abc|db", "abcd", "ab both 1|bc both 1|db both 2"},
      {"abcdefghij|dk|hl", "adhjkl", "abcd both 1|defgh both 1|hij both 1|dk both 2|hl both 3"},
      {"abca", "a", "abca both 1"},
      {"abca|bd", "bd", "bcab both 1|bd both 2"},
      {"abcdbe", "abe", "ab both 1|bcdb both 1|be both 1"},
      {"abcdb", "ab", "ab both 1|bcdb both 1"},
      {"abc|adc|ae|cf", "acef", "abc both 1|adc both 2|ae both 3|cf both 4"},
      // Joined whichever way they point; the road with the lower id keeps its direction.
      {"abc|cde", "ae", "abcde both 1-2"},    {"abc|edc", "ae", "abcde both 1-2"},
      {"cba|cde", "ae", "edcba both 1-2"},    {"cba|edc", "ae", "edcba both 1-2"},
      {"cde|abc", "ae", "abcde both 1-2"},    {"edc|cba", "ae", "edcba both 1-2"},
      // Joined only where traffic can arrive and depart.
      {"ab oneway=yes|bc oneway=yes", "ac", "abc forward 1-2"},
      {"ab oneway=yes|cb oneway=yes", "abc", "ab forward 1|cb forward 2"},
      {"ba oneway=yes|bc oneway=yes", "abc", "ba forward 1|bc forward 2"},
      {"ba oneway=yes|cb oneway=yes", "ac", "cba forward 1-2"},
      {"ab oneway=yes|cb oneway=-1", "ac", "abc forward 1-2"},
      {"ab oneway=-1|bc oneway=-1", "ac", "abc backward 1-2"},
      {"ab oneway=-1|bc oneway=yes", "abc", "ab backward 1|bc forward 2"},
      {"ba oneway=-1|bc oneway=yes", "ac", "cba backward 1-2"},
      {"ba oneway=-1|cb oneway=-1", "ac", "cba backward 1-2"},
      {"ba oneway=-1|bc oneway=-1", "abc", "ba backward 1|bc backward 2"},
      {"ab|cb oneway=yes", "ac", "abc both 1-2"},
      {"ab oneway=yes|cb", "ac", "abc forward 1-2"},
      {"ba oneway=yes|bc", "ac", "cba forward 1-2"},
      // Head to head at b: it becomes passable only by a join, when it is no candidate any more.
      {"dc|ab oneway=yes|cb oneway=yes", "abd", "dcb both 1-3|ab forward 2"},
      // Names are joined by id, unless the second is part of the first.
      {"ab name=Alpha|bc name=Beta", "ac", "abc both Alpha-Beta"},
      {"ab name=Alpha|cb name=Alpha", "ac", "abc both Alpha"},
      {"ab name=Alpha Road|bc name=Alpha", "ac", "abc both Alpha Road"},
      {"ab name=Alpha|cb name=Alpha Road", "ac", "abc both Alpha-Alpha Road"},
      {"bc name=Alpha|ab name=", "ac", "abc both Alpha"},
      {"ab name=|bc name=Beta", "ac", "abc both -Beta"},
      {"ab name=|bc name=", "ac", "abc both "},
      {"ab name=Straße|bc name=ß", "ac", "abc both Straße"},
      // Chains, and where they stop.
      {"ab|bc|cd", "ad", "abcd both 1-2-3"},        {"bc|ab|cd", "ad", "abcd both 1-2-3"},
      {"ba|bc|dc|de", "ae", "edcba both 1-2-3-4"},  {"abc|cda", "c", "cdabc both 1-2"},
      {"cd|ab|bc|ef|de", "af", "abcdef both 1-2-3-5-4"},
      {"ab|bc|ca|ad", "ad", "abca both 1-2-3|ad both 4"},
      {"ab|bc|bd", "abcd", "ab both 1|bc both 2|bd both 3"}};
  // clang-format on
  for (auto const& [ways, nodes, roads] : cases) {
    SCOPED_TRACE(ways);
    Town town("abcdef\nghijkl");
    Import const import(addWays(town, ways));
    EXPECT_EQ(import.nodes(), nodes);
    EXPECT_EQ(briefRoads(import, town), roads);
  }
}

TEST(AssignSegmentElevations, ReadsLayersAsNumbers) {
  // clang-format off
  std::pair<char const*, double> const levels[] = {
      {"1", 1}, {"-2", -2}, {"0.5", 0.5}, {" 2", 2}, {"\t-1", -1}, {"+1", 1}, {"1;2", 1},
      {"3abc", 3}, {"1 000", 1}, {"1,5", 1}, {"0x10", 0}, {"1e1", 10}, {".5", 0.5}, {"5.", 5},
      {"3e", 0}, {"3em", 0}, {"1e400", 0}, {"yes", 0}, {"", 0}, {".", 0}, {"-", 0}, {"nan", 0},
      {"inf", 0}, {"100", 100}, {"\u2212" "1", 0}, {"\u0661", 0}};
  // clang-format on
  for (auto const& [layer, level] : levels) {
    std::u16string const key = u"layer";
    std::u16string const value = support::to_ustring(layer);
    OpenStreetMap::Tag const tag{&key, &value};
    EXPECT_EQ(wayLayerElevation(OpenStreetMap::Tags({&tag, 1})), 4.9 * level) << layer;
  }
  EXPECT_EQ(wayLayerElevation({}), 0.0);
}

TEST(AssignSegmentElevations, SpreadsFromWaysToRoadsNodesAndProfiles) {
  Town town(R"(
    x--a--b--c--d--y
       |        |
       e        f
  )");
  Import const import(addWays(town, "xa|ae|abcd layer=1|df|dy|ay layer=0"));
  double const a = 4.9 / 4.0;  // the mean of the four roads here
  double const d = 4.9 / 3.0;
  EXPECT_EQ(import.node('a')->getElevation(), a);
  EXPECT_EQ(import.node('d')->getElevation(), d);
  EXPECT_EQ(import.node('e')->getElevation(), 0.0);
  EXPECT_EQ(elevations(import, 3), elevationProfile(4, a, 4.9, d));
  EXPECT_THAT(elevations(import, 2), ElementsAre(a, 0.0));
  Town joined("abc");
  Import const mean(addWays(joined, "ab layer=1|bc"));
  EXPECT_THAT(elevations(mean, 1), ElementsAre(4.9 / 2, 4.9 / 2, 4.9 / 2));
}

TEST(ElevationProfile, IsAQuadraticBezierCurve) {
  EXPECT_THAT(elevationProfile(3, 0.0, 4.9, 0.0), ElementsAre(0.0, 2.45, 0.0));
  EXPECT_THAT(elevationProfile(5, 1.0, 2.0, 3.0), ElementsAre(1.0, 1.5, 2.0, 2.5, 3.0));
  EXPECT_THAT(elevationProfile(2, 1.0, 9.0, -1.0), ElementsAre(1.0, -1.0));
  EXPECT_THAT(elevationProfile(1, 1.0, 2.0, 3.0), ElementsAre(is(notANumber)));
  EXPECT_THAT(elevationProfile(0, 1.0, 2.0, 3.0), ElementsAre());
  EXPECT_THAT(elevationProfile(2, notANumber, 2.0, 3.0),
              ElementsAre(is(notANumber), is(notANumber)));
}

TEST(GeographicReference, LiesAtTheCentreOfTheLimits) {
  struct Case {
    char const* head;
    char const* drawing;
    Doubles limits, centre;
  };
  // clang-format off
  Case const cases[] = {
      {"<bounds minlat='10' maxlat='20' minlon='30' maxlon='50'/>", "", {10, 20, 30, 50}, {15, 40}},
      {"", "a----b\n\nc", {47.998, 48, 11, 11.005}, {(47.998 + 48) / 2, (11 + 11.005) / 2}},
      {"", "", {}, {notANumber, notANumber}}};
  // clang-format on
  for (Case const& c : cases) {
    Import const import(Town(c.drawing).head(c.head));
    EXPECT_EQ(geographicLimits(import.importer()), c.limits);
    auto const& origin = import.network()->getGeoReference();
    EXPECT_THAT(origin->getLatitude(), is(c.centre[0]));
    EXPECT_THAT(origin->getLongitude(), is(c.centre[1]));
    EXPECT_EQ(origin->getAltitude(), 0.0);
  }
}

// Against a plain search, with few letters so that names do occur in one another, and in an order
// that puts short names to long ones on either side.
TEST(JoinedName, IsThatOfAPlainSearchHoweverLong) {
  std::mt19937 random(1);
  for (unsigned const letters : {1u, 2u, 5u}) {
    std::u16string expected;
    JoinedName name(expected);
    for (int i = 0; i < 2000; ++i) {
      std::u16string other(random() % 12 + (random() % 50 == 0 ? expected.size() : 0), u'a');
      for (char16_t& unit : other) unit = static_cast<char16_t>(u'a' + random() % letters);
      if (random() % 3 == 0 && !expected.empty()) {  // a part of any size, or nearly one
        std::size_t const from = random() % expected.size();
        other = expected.substr(from, random() % 2 == 0 ? 12 : random() % expected.size());
        if (random() % 4 == 0) other.back() = u'-';
      }
      JoinedName joined(other);
      if (random() % 2 == 0) {
        if (expected.find(other) == expected.npos) expected += u"-" + other;
        name.join(joined);
      } else {
        if (other.find(expected) == other.npos) other += u"-" + expected;
        expected = other;
        joined.join(name);
        name = std::move(joined);
      }
      ASSERT_EQ(name.text(), expected) << i;
      if (expected.size() > 20000) break;
    }
  }
}

TEST(JoinedName, HoldsPartsAcrossWhatWasPutInFront) {
  std::u16string expected(1000, u'-');
  std::iota(expected.begin(), expected.end(), u'\x3000');  // no unit twice
  JoinedName name(expected), same(expected), first(u"ab");
  name.join(same);  // a long name is indexed when something is joined to it
  first.join(name);
  expected = u"ab-" + expected;
  for (std::size_t from = 0; from < 5; ++from) {
    for (std::size_t size = 1; size < 8; ++size) {
      JoinedName part(expected.substr(from, size));
      first.join(part);
      ASSERT_EQ(first.text(), expected) << from << ' ' << size;
    }
  }
}
