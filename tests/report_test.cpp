// The report: every way accounted for, and the places to check.
#include "report/ImportReport.hpp"

#include <gmock/gmock.h>

#include "tests/fixture/Import.hpp"

using testing::ElementsAre;

namespace {

std::vector<OpenStreetMap::Id> ids(std::vector<OpenStreetMap::Way const*> const& ways) {
  std::vector<OpenStreetMap::Id> result;
  for (auto const* const way : ways) result.push_back(way->id);
  return result;
}

// Node letter, road, and the two ways: "c 1: 1 2".
std::vector<std::string> text(std::vector<ImportReport::Join> const& joins) {
  std::vector<std::string> result;
  for (auto const& join : joins) {
    result.push_back(std::string(1, Town::letter(static_cast<unsigned long>(join.node))) + " " +
                     std::to_string(join.road) + ": " + std::to_string(join.one->id) + " " +
                     std::to_string(join.other->id));
  }
  return result;
}

}  // namespace

TEST(Report, GivesOneReasonForEachWayThatIsNotImported) {
  Town town("a-b-c");
  town.way("ab").way("bc", "highway=path").way("bXc").way("b").way("X", "highway=steps");
  town.way("XYZX", "highway=road").way("", "highway=road").way("ac", "building=yes,highway=");
  Import const import(town);
  ImportReport const report = reportOn(import.importer());
  EXPECT_EQ(report.highwayWays, 8u);
  EXPECT_EQ(report.importedWays, 1u);
  EXPECT_THAT(ids(report.notARoad), ElementsAre(2, 5, 8));
  EXPECT_THAT(ids(report.fewerThanTwoNodes), ElementsAre(4, 7));
  ASSERT_EQ(report.missingNodes.size(), 2u);
  EXPECT_EQ(report.missingNodes[0].way->id, 3);
  EXPECT_THAT(report.missingNodes[0].first, ElementsAre(Town::id('X')));
  EXPECT_EQ(report.missingNodes[1].count, 4u);
}

TEST(Report, NamesTheTagsToCheck) {
  Town town("a-b");
  town.way("ab", "junction=roundabout").way("ab", "junction=roundabout,oneway=no");
  town.way("ab", "highway=motorway").way("ab", "highway=motorway_link");
  for (auto const* const value : {"reversible", "true", "-1", "yes", "no", "1", "0", "false"}) {
    town.way("ab", std::string("oneway=") + value);
  }
  town.way("ab", "bridge=yes").way("ab", "tunnel=culvert").way("ab", "bridge=no");  // from 13
  town.way("ab", "bridge=yes,layer=1").way("ab", "layer=one").way("ab", "layer=6");
  town.way("ab", "layer=-5").way("ab", "layer=-5.5");
  Import const import(town);
  ImportReport const report = reportOn(import.importer());
  EXPECT_THAT(ids(report.impliedOneway), ElementsAre(1, 3));
  EXPECT_THAT(ids(report.unknownOneway), ElementsAre(5, 6));
  EXPECT_THAT(ids(report.levelBridges), ElementsAre(13, 14));
  EXPECT_THAT(ids(report.oddLayers), ElementsAre(17, 18, 20));
}

TEST(Report, FindsJoinsThatLostSomething) {
  Town town(R"(
    a--b--c--d--e--f--g--h
  )");
  town.way("ab", "oneway=yes").way("bc", "oneway=yes").way("dc", "oneway=-1");  // all the same
  town.way("de", "name=A").way("ef", "name=A").way("gf", "oneway=yes,name=A").way("gh", "name=B");
  Import const import(town);
  ImportReport const report = reportOn(import.importer());
  EXPECT_THAT(text(report.droppedDirections), ElementsAre("d 1: 3 4", "f 1: 5 6", "g 1: 6 7"));
  EXPECT_THAT(text(report.differentNames), ElementsAre("d 1: 3 4", "g 1: 6 7"));
}

TEST(Report, FindsNodesInTheMiddleOfWaysOnDifferentLayers) {
  Town town(R"(
       d
    a--b--c
       e--f
  )");
  town.way("abc", "bridge=yes,layer=1").way("dbe").way("fbd", "layer=1").way("bec", "layer=1");
  Import const import(town);
  ImportReport const report = reportOn(import.importer());
  ASSERT_EQ(report.sharedNodes.size(), 1u);
  EXPECT_EQ(report.sharedNodes[0].node, Town::id('b'));
  EXPECT_EQ(report.sharedNodes[0].one->id, 1);
  EXPECT_EQ(report.sharedNodes[0].other->id, 2);
}
