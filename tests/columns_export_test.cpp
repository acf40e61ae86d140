// A network as columns: what comparing them with the outputs doesn't show.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "export/NetworkColumns.hpp"
#include "report/roadLength.hpp"
#include "tests/fixture/Import.hpp"

using testing::ElementsAre;
using velora::roadnetwork::Road;

namespace {

// Of each row, and at the end of each different text.
std::string textOf(Texts const& texts) {
  std::string all;
  for (auto const code : texts.codes) all += std::to_string(code) + ' ';
  for (std::size_t i = 0; i + 1 < texts.offsets.size(); ++i) {
    auto const begin = texts.bytes.begin();
    all += '|' + std::string(begin + texts.offsets[i], begin + texts.offsets[i + 1]);
  }
  return all;
}

}  // namespace

TEST(Columns, KeepEachTextOnceAndKnowTheRowsOfNodes) {
  Town town("a-b-c-d  e-f  g-h  i-j");
  town.way("ab", "name=A,lanes=2").way("bc", "lanes=2,name=B").way("cd", "name=A,lanes=1");
  town.way("fe", "name=A;B,oneway=-1").way("gh", "name=").way("ij");
  Import const import(town, {Joining::all, OneWays::tagged, {"lanes", "length"}});
  NetworkColumns const columns = networkColumns(import.importer);
  auto const& roads = columns.roads;
  EXPECT_THAT(roads.id, ElementsAre(1, 4, 5, 6));
  EXPECT_THAT(columns.nodes.id, ElementsAre(1, 4, 5, 6, 7, 8, 9, 10));
  EXPECT_THAT(roads.startNode, ElementsAre(1, 6, 7, 9));
  EXPECT_THAT(roads.start, ElementsAre(0, 3, 4, 6));
  EXPECT_THAT(roads.end, ElementsAre(1, 2, 5, 7));
  EXPECT_THAT(roads.direction, ElementsAre(3, 2, 3, 3));
  EXPECT_THAT(roads.weight, ElementsAre(3.0, 1.0, 1.0, 1.0));
  EXPECT_THAT(roads.wayIds.offsets, ElementsAre(0, 3, 4, 5, 6));
  EXPECT_THAT(roads.centreLine.offsets, ElementsAre(0, 4, 6, 8, 10));
  std::vector<std::string> texts;
  for (auto const& [name, column] : roads.texts) texts.push_back(name + ' ' + textOf(column));
  EXPECT_THAT(texts, ElementsAre("name 0 0 -1 -1 |A;B", "highway 0 0 0 0 |residential",
                                 "lanes 0 -1 -1 -1 |2;1", "osm_length -1 -1 -1 -1 "));
  auto const lengths = roadLengths(roads.centreLine.offsets, roads.centreLine.values);
  for (Road const& road : import.network->getRoads()) {
    auto const row = std::find(roads.id.begin(), roads.id.end(), road->getID()) - roads.id.begin();
    EXPECT_EQ(lengths[static_cast<std::size_t>(row)], roadLength(road));
  }
}

TEST(Columns, SayWhereRestrictionsApply) {
  Town town(R"(
    a-b-c
      |
      d
  )");
  town.way("ab").way("cb").way("bd").restriction("from:1 via:b to:2",
                                                 "restriction:hgv=no_straight_on,except=bus");
  ImportOptions options{Joining::none, OneWays::tagged};
  options.restrictions = true;
  Import const import(town, options);
  RestrictionColumns const columns = restrictionColumns(import.importer);
  EXPECT_THAT(columns.fromRoad, ElementsAre(1));
  EXPECT_THAT(columns.fromDirection, ElementsAre(1));
  EXPECT_THAT(columns.toRoad, ElementsAre(2));
  EXPECT_THAT(columns.toDirection, ElementsAre(2));
  EXPECT_THAT(columns.viaNodes.values, ElementsAre(2));
  EXPECT_THAT(columns.viaRoads.offsets, ElementsAre(0, 0));
  EXPECT_EQ(textOf(columns.kind) + textOf(columns.vehicles) + textOf(columns.condition) +
                textOf(columns.except),
            "0 |no_straight_on0 |hgv-1 0 |bus");
}
