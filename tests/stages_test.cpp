// The stages of the import, on small towns that go through the real reader.
#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <map>
#include <sstream>

#include "importer/geographicLimits.hpp"
#include "osm/collectWayAttributes.hpp"
#include "segments/assignSegmentElevations.hpp"
#include "segments/elevationProfile.hpp"
#include "support/ustring.hpp"
#include "tests/fixture/Import.hpp"
#include "tests/fixture/TemporaryFile.hpp"

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

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

std::vector<OpenStreetMap::Id> selectedIds(Import const& import) {
  std::vector<OpenStreetMap::Id> ids;
  for (auto const* way : import.importer().selectedWays) ids.push_back(way->id);
  return ids;
}

std::vector<double> elevations(Import const& import, unsigned long road) {
  return import.road(road)->getRoadSegments()[0]->getElevations().values();
}

}  // namespace

TEST(SelectHighwayWays, KeepsExactlyTheRoadValues) {
  std::vector<std::string> const roads = split(
      "motorway|trunk|primary|secondary|tertiary|unclassified|residential|motorway_link|trunk_link|"
      "primary_link|secondary_link|tertiary_link|living_street|service|raceway|road");
  std::vector<std::string> const others = split(
      "path|track|footway|cycleway|pedestrian|steps||Motorway|motorway | motorway|proposed|roads|"
      "motorway;primary");
  Town town("a-b");
  for (auto const& value : roads) town.way("ab", "highway=" + value);
  for (auto const& value : others) town.way("ab", "highway=" + value);
  town.way("ab", "highway=residential,area=yes");
  Import const import(town);
  std::vector<OpenStreetMap::Id> expected;
  for (std::size_t id = 1; id <= roads.size(); ++id) expected.push_back(static_cast<long>(id));
  expected.push_back(static_cast<long>(roads.size() + others.size() + 1));
  EXPECT_EQ(selectedIds(import), expected);
  EXPECT_EQ(import.importer().selectedWays.capacity(), expected.size());
}

TEST(SelectHighwayWays, NeedsAllNodesAndAtLeastTwoReferences) {
  Town town("a-b-c");
  town.way(7, "abc").way(-3, "ab").way(5, "a").way(6, "").way(4, "abz").way(3, "zab").way(2, "aa");
  town.way(-9, "aba").way(9, "azb");
  EXPECT_THAT(selectedIds(Import(town)), ElementsAre(-9, -3, 2, 7));
}

TEST(CollectWayAttributes, NamesAndDirections) {
  // clang-format off
  std::pair<char const*, char const*> const cases[] = {
      {"", "both \"1\""}, {"name=", "both \"\""}, {"name= A  b ", "both \" A  b \""},
      {"Name=x,ref=B 1", "both \"1\""}, {"oneway=yes", "forward \"1\""},
      {"oneway=1", "forward \"1\""}, {"oneway=-1", "backward \"1\""},
      {"oneway=no", "both \"1\""}, {"oneway=", "both \"1\""}, {"oneway=YES", "both \"1\""},
      {"oneway=yes ", "both \"1\""}, {"oneway=true", "both \"1\""},
      {"oneway=reversible", "both \"1\""}, {"junction=roundabout", "both \"1\""}};
  // clang-format on
  for (auto const& [tags, expected] : cases) {
    Town town("a-b");
    town.way("ab", tags);
    EXPECT_THAT(Import(town).roads(town),
                ElementsAre("1: ab " + std::string(expected) + " weight 1 ways 1"));
  }
  EXPECT_EQ(wayName(std::numeric_limits<long>::min(), {}), u"-9223372036854775808");
}

TEST(CreateNodesAndRoads, CutsWaysAtTheirJunctions) {
  struct Case {
    char const* what;
    std::vector<char const*> ways;
    char const* nodes;
    std::vector<std::string> roads;  // letters alone
  };
  Case const cases[] = {
      {"no junction inside", {"abcd"}, "ad", {"abcd"}},
      {"crossing in both interiors", {"abc", "dbe"}, "abcde", {"ab", "bc", "db", "be"}},
      {"end in another interior", {"abc", "bd"}, "abcd", {"ab", "bc", "bd"}},
      {"start in another interior", {"abc", "db"}, "abcd", {"ab", "bc", "db"}},
      {"two inner junctions of ten",
       {"abcdefghij", "dk", "hl"},
       "adhjkl",
       {"abcd", "defgh", "hij", "dk", "hl"}},
      {"closed way", {"abca"}, "a", {"abca"}},
      {"closed way with a spur", {"abca", "bd"}, "bd", {"bcab", "bd"}},
      {"way that meets itself", {"abcdbe"}, "abe", {"ab", "bcdb", "be"}},
      {"way that ends in its own interior", {"abcdb"}, "ab", {"ab", "bcdb"}},
      {"parallel ways", {"abc", "adc", "ae", "cf"}, "acef", {"abc", "adc", "ae", "cf"}},
      {"nothing", {}, "", {}}};
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Town town("abcdef\nghijkl");
    for (char const* const way : c.ways) town.way(way);
    Import const import(town);
    EXPECT_EQ(import.nodes(), c.nodes);
    std::vector<std::string> lines;
    for (auto const& road : import.network()->getRoads()) {
      lines.push_back(town.letters(road->getCentersX().values(), road->getCentersY().values()));
    }
    EXPECT_THAT(lines, testing::UnorderedElementsAreArray(c.roads));
  }
}

TEST(CreateNodesAndRoads, NumbersRoadsByWayIdAndNamesNodesById) {
  Town town("a-b-c\n ded");
  town.way(30, "abc").way(20, "bd").way(-1, "be");
  Import const import(town);
  EXPECT_THAT(
      import.roads(town),
      ElementsAre("1: be both \"-1\" weight 1 ways -1", "2: bd both \"20\" weight 1 ways 20",
                  "3: ab both \"30\" weight 1 ways 30", "4: bc both \"30\" weight 1 ways 30"));
  EXPECT_EQ(import.node('b')->getName(), u"2");
  EXPECT_THAT(import.node('b')->getPosition(), ElementsAre(48.0, 11.002, 0.0));
}

TEST(ChainRoads, JoinsEveryOrientation) {
  struct Case {
    char const* first;
    char const* second;
    char const* line;
  };
  Case const cases[] = {{"abc", "cde", "abcde"}, {"abc", "edc", "abcde"}, {"cba", "cde", "edcba"},
                        {"cba", "edc", "edcba"}, {"cde", "abc", "abcde"}, {"edc", "cba", "edcba"}};
  for (Case const& c : cases) {
    Town town("abcde");
    town.way(c.first, "name=Alpha").way(c.second, "name=Beta");
    Import const import(town);
    EXPECT_THAT(import.roads(town), ElementsAre(std::string("1: ") + c.line +
                                                " both \"Alpha-Beta\" weight 2 ways 1 2"));
    EXPECT_EQ(import.nodes(), "ae");
  }
}

TEST(ChainRoads, JoinsOnlyWhereTrafficCanArriveAndDepart) {
  struct Case {
    char const* first;
    char const* firstDirection;
    char const* second;
    char const* secondDirection;
    char const* joined;  // direction of the joined road, or null
  };
  Case const cases[] = {
      {"ab", "yes", "bc", "yes", "forward"}, {"ab", "yes", "cb", "yes", nullptr},
      {"ba", "yes", "bc", "yes", nullptr},   {"ba", "yes", "cb", "yes", "forward"},
      {"ab", "yes", "cb", "-1", "forward"},  {"ab", "-1", "bc", "-1", "backward"},
      {"ab", "-1", "bc", "yes", nullptr},    {"ba", "-1", "bc", "yes", "backward"},
      {"ab", "no", "cb", "yes", "both"},     {"ab", "yes", "cb", "no", "forward"},
      {"ba", "yes", "bc", "no", "forward"},  {"ba", "-1", "cb", "-1", "backward"},
      {"ba", "-1", "bc", "-1", nullptr}};
  for (Case const& c : cases) {
    SCOPED_TRACE(std::string(c.first) + ' ' + c.firstDirection + ", " + c.second + ' ' +
                 c.secondDirection);
    Town town("abc");
    town.way(c.first, std::string("oneway=") + c.firstDirection);
    town.way(c.second, std::string("oneway=") + c.secondDirection);
    Import const import(town);
    EXPECT_EQ(import.nodes(), c.joined != nullptr ? "ac" : "abc");
    if (c.joined != nullptr) {
      EXPECT_THAT(import.roads(town), ElementsAre(testing::HasSubstr(c.joined)));
    }
  }
}

TEST(ChainRoads, JoinsNamesById) {
  struct Case {
    char const* first;
    char const* second;
    char const* joined;
  };
  Case const cases[] = {{"Alpha", "Beta", "Alpha-Beta"},
                        {"Alpha", "Alpha", "Alpha"},
                        {"Alpha Road", "Alpha", "Alpha Road"},
                        {"Alpha", "Alpha Road", "Alpha-Alpha Road"},
                        {"Alpha", "", "Alpha"},
                        {"", "Beta", "-Beta"},
                        {"", "", ""},
                        {"Straße", "ß", "Straße"}};
  for (Case const& c : cases) {
    for (char const* const second : {"bc", "cb"}) {  // whichever way round
      Town town("abc");
      town.way("ab", std::string("name=") + c.first).way(second, std::string("name=") + c.second);
      EXPECT_EQ(support::ustring_to_utf8(Import(town).road(1)->getName()), c.joined);
    }
  }
}

TEST(ChainRoads, JoinsChainsAndStopsAtLoops) {
  struct Case {
    char const* what;
    std::vector<char const*> ways;
    char const* nodes;
    std::vector<std::string> roads;
  };
  Case const cases[] = {
      {"chain", {"ab", "bc", "cd"}, "ad", {"1: abcd both \"1-2-3\" weight 3 ways 1 2 3"}},
      {"chain from the middle",
       {"bc", "ab", "cd"},
       "ad",
       {"1: abcd both \"1-2-3\" weight 3 ways 1 2 3"}},
      {"turning chain",
       {"ba", "bc", "dc", "de"},
       "ae",
       {"1: edcba both \"1-2-3-4\" weight 4 ways 1 2 3 4"}},
      {"ends join before the middle",
       {"cd", "ab", "bc", "ef", "de"},
       "af",
       {"1: abcdef both \"1-2-3-5-4\" weight 5 ways 1 2 3 4 5"}},
      {"closed way alone", {"abca"}, "a", {"1: abca both \"1\" weight 1 ways 1"}},
      {"ring of two", {"abc", "cda"}, "c", {"1: cdabc both \"1-2\" weight 2 ways 1 2"}},
      {"ring of three with a spur",
       {"ab", "bc", "ca", "ad"},
       "ad",
       {"1: abca both \"1-2-3\" weight 3 ways 1 2 3", "4: ad both \"4\" weight 1 ways 4"}},
      {"three roads meet",
       {"ab", "bc", "bd"},
       "abcd",
       {"1: ab both \"1\" weight 1 ways 1", "2: bc both \"2\" weight 1 ways 2",
        "3: bd both \"3\" weight 1 ways 3"}}};
  for (Case const& c : cases) {
    SCOPED_TRACE(c.what);
    Town town("abcdef");
    for (char const* const way : c.ways) town.way(way);
    Import const import(town);
    EXPECT_EQ(import.nodes(), c.nodes);
    EXPECT_EQ(import.roads(town), c.roads);
  }
}

// One-way roads end head to head at b; joined with the two-way road beyond c, one of them becomes
// two-way, but b was no candidate when the joining began.
TEST(ChainRoads, LeavesANodeThatQualifiesOnlyAfterAJoin) {
  Town town("abcd");
  town.way("dc").way("ab", "oneway=yes").way("cb", "oneway=yes");
  Import const import(town);
  EXPECT_EQ(import.nodes(), "abd");
  EXPECT_THAT(import.roads(town), ElementsAre("1: dcb both \"1-3\" weight 2 ways 1 3",
                                              "2: ab forward \"2\" weight 1 ways 2"));
}

TEST(AssignSegmentElevations, ReadsLayersAsNumbers) {
  // clang-format off
  std::map<std::string, double> const levels{
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
  // b has two roads and is no end for a third, but is kept by the third road at b.
  Town town(R"(
    x--a--b--c--d--y
       |        |
       e        f
  )");
  town.way("xa").way("ae").way("abcd", "layer=1").way("df").way("dy").way("ay", "layer=0");
  Import const import(town);
  double const a = (0.0 + 0.0 + 4.9 + 0.0) / 4.0;
  EXPECT_THAT(import.node('a')->getPosition(), ElementsAre(testing::_, testing::_, is(a)));
  EXPECT_THAT(import.node('e')->getElevation(), is(0.0));
  std::vector<double> const bridge = elevations(import, 3);
  double const d = import.node('d')->getElevation();
  EXPECT_EQ(bridge, elevationProfile(4, a, 4.9, d));
  EXPECT_EQ(bridge.front(), a);
  EXPECT_EQ(bridge.back(), d);
  EXPECT_THAT(elevations(import, 2), ElementsAre(a, 0.0));
}

TEST(AssignSegmentElevations, TakesTheMeanOverAllWaysOfARoad) {
  Town town("abc");
  town.way("ab", "layer=1").way("bc");
  Import const import(town);
  EXPECT_THAT(elevations(import, 1), ElementsAre(4.9 / 2, 4.9 / 2, 4.9 / 2));  // constant branch
  EXPECT_EQ(import.node('a')->getElevation(), 4.9 / 2);
}

TEST(ElevationProfile, IsAQuadraticBezierCurve) {
  EXPECT_THAT(elevationProfile(3, 0.0, 4.9, 0.0), ElementsAre(0.0, 2.45, 0.0));
  EXPECT_THAT(elevationProfile(5, 1.0, 2.0, 3.0), ElementsAre(1.0, 1.5, 2.0, 2.5, 3.0));
  EXPECT_THAT(elevationProfile(2, 1.0, 9.0, -1.0), ElementsAre(1.0, -1.0));
  EXPECT_THAT(elevationProfile(1, 1.0, 2.0, 3.0), ElementsAre(is(notANumber)));
  EXPECT_THAT(elevationProfile(0, 1.0, 2.0, 3.0), IsEmpty());
  EXPECT_THAT(elevationProfile(2, notANumber, 2.0, 3.0),
              ElementsAre(is(notANumber), is(notANumber)));
}

TEST(GeographicReference, LiesAtTheCentreOfTheLimits) {
  struct Case {
    char const* head;
    char const* drawing;
    std::vector<double> limits;
    double latitude;
    double longitude;
  };
  Case const cases[] = {{"<bounds minlat=\"10\" maxlat=\"20\" minlon=\"30\" maxlon=\"50\"/>",
                         "a-b",
                         {10, 20, 30, 50},
                         15,
                         40},
                        {"",
                         "a----b\n\nc",
                         {47.998, 48.0, 11.0, 11.005},
                         (47.998 + 48.0) * 0.5,
                         (11.0 + 11.005) * 0.5},
                        {"", "", {}, notANumber, notANumber}};
  for (Case const& c : cases) {
    Town town(c.drawing);
    town.head(c.head);
    if (*c.drawing != '\0') town.way("ab");
    Import const import(town);
    EXPECT_EQ(geographicLimits(import.importer()), c.limits);
    auto const& origin = import.network()->getGeoReference();
    EXPECT_THAT(origin->getLatitude(), is(c.latitude));
    EXPECT_THAT(origin->getLongitude(), is(c.longitude));
    EXPECT_EQ(origin->getAltitude(), 0.0);
  }
}

TEST(Import, IsTheSameWhateverTheOrderOfElements) {
  Town town("abcde\nfghij\nklmno");
  town.way("abcde").way("chm", "layer=1").way("fghij", "oneway=yes").way("ej").way("mno").way("ok");
  std::string const xml = town.xml();
  std::size_t const nodes = xml.find("  <node");
  std::size_t const ways = xml.find("  <way");
  std::size_t const end = xml.find("</osm>");
  std::string const waysFirst = xml.substr(0, nodes) + xml.substr(ways, end - ways) +
                                xml.substr(nodes, ways - nodes) + xml.substr(end);
  EXPECT_EQ(Import(TemporaryFile(waysFirst).path()).roads(town), Import(town).roads(town));
}

TEST(Import, LeavesNothingBehind) {
  std::size_t const before = kb::zero::ModelElementImpl::liveCount();
  {
    Town town("abc\ndef");
    town.way("abc").way("bed").way("cf").way("defa", "layer=1");
    Import const import(town);
    EXPECT_GT(kb::zero::ModelElementImpl::liveCount(), before);
  }
  EXPECT_EQ(kb::zero::ModelElementImpl::liveCount(), before);
}

TEST(Import, FailsBeforeItTouchesTheNetwork) {
  auto const model = kb::zero::Model::create();
  auto const network = velora::roadnetwork::RoadNetwork::create(model, {});
  RoadNetworkImporter importer(model, network);
  TemporaryFile const broken("<osm version=\"0.6\"><node id=\"1\" lat=\"1\" lon=\"2\"/>");
  EXPECT_THROW(importer.run(broken.path()), std::runtime_error);
  EXPECT_EQ(network->getNodes().size(), 0u);
  EXPECT_FALSE(network->getGeoReference());
  EXPECT_THROW(importer.run("no\xFFname"), std::range_error);
}

TEST(Import, NeedsAModelAndANetwork) {
  Town town("ab");
  town.way("ab");
  TemporaryFile const file(town.xml());
  auto const model = kb::zero::Model::create();
  auto const network = velora::roadnetwork::RoadNetwork::create(model, {});
  kb::zero::Model const noModel;
  velora::roadnetwork::RoadNetwork const noNetwork;
  EXPECT_THROW(RoadNetworkImporter(model, noNetwork).run(file.path()), kb::zero::NullHandleError);
  EXPECT_THROW(RoadNetworkImporter(noModel, network).run(file.path()), kb::zero::NullHandleError);
}
