// The stages of the import, where neither the extracts nor random towns show what they do.
#include <gmock/gmock.h>

#include <numeric>
#include <random>

#include "graph/JoinedName.hpp"
#include "graph/chainRoads.hpp"
#include "segments/elevationProfile.hpp"
#include "tests/fixture/Import.hpp"

using testing::ElementsAre;
using velora::roadnetwork::Road;

TEST(Import, MakesSegmentsThatShareTheirNodesAndKeepsNothing) {
  {
    Import const import(
        Town("a-b-c\n\nd").way("abc", "layer=0.5").way("bd", "highway=path").way("bd"));
    auto const& roads = import.network->getRoads();  // ab, bc, bd
    auto const b = roads[0]->getRoadSegments()[0]->getEndNode();
    EXPECT_EQ(roads[1]->getRoadSegments()[0]->getStartNode(), b);
    EXPECT_EQ(roads[2]->getRoadSegments()[0]->getStartNode(), b);
    EXPECT_EQ(import.network->getNodes()[1]->getElevation(), 4.9 * 0.5);  // in any locale
    EXPECT_EQ(import.importer.selectedWays.capacity(), 2u);  // kept as long as the import
  }
  EXPECT_EQ(kb::zero::ModelElementImpl::liveCount(), 0u);
}

// Of two points at the Node that of the road which goes stays, be it a chain already. The points of
// road 1 are 10 to 12, and so on.
TEST(ChainRoads, TakesThePointAtTheNodeFromTheHigherRoadId) {
  struct Case {
    std::vector<std::pair<support::ModelId, support::ModelId>> roads;  // start and end
    std::vector<double> line;
  };
  Case const cases[] = {{{{1, 2}, {2, 3}}, {10, 11, 20, 21, 22}},
                        {{{1, 2}, {3, 2}}, {10, 11, 22, 21, 20}},
                        {{{2, 1}, {2, 3}}, {22, 21, 20, 11, 12}},
                        {{{2, 1}, {3, 2}}, {20, 21, 22, 11, 12}},
                        {{{1, 2}, {3, 4}, {2, 3}}, {10, 11, 30, 31, 20, 21, 22}},
                        {{{1, 3}, {2, 4}, {3, 2}}, {10, 11, 30, 31, 32, 21, 22}}};
  for (auto const& [roads, line] : cases) {
    Import import;
    import.network->addNodes({1, 2, 3, 4}, std::vector<std::u16string>(4), std::vector<double>(12));
    for (auto const& [start, end] : roads) {
      Road const road = Road::create(import.model, {});
      road->setID(import.network->getRoads().size() + 1);
      road->setStartNode(import.network->getNodes()[start]);
      road->setEndNode(import.network->getNodes()[end]);
      double const first = 10.0 * static_cast<double>(road->getID());
      road->setCenters({first, first + 1, first + 2}, {first, first + 1, first + 2});
      import.network->addRoad(road);
    }
    chainRoads(import.importer);
    ASSERT_EQ(import.network->getRoads().size(), 1u);
    EXPECT_THAT(import.network->getRoads()[0]->getCentersX(), testing::ElementsAreArray(line));
    EXPECT_THAT(import.network->getRoads()[0]->getCentersY(), testing::ElementsAreArray(line));
  }
}

TEST(ElevationProfile, OfOnePointIsNaN) {
  EXPECT_THAT(elevationProfile(1, 1.0, 2.0, 3.0), ElementsAre(testing::IsNan()));
  EXPECT_THAT(elevationProfile(0, 1.0, 2.0, 3.0), ElementsAre());
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
      ASSERT_EQ(*name.text(), expected) << i;
      if (expected.size() > 20000) break;
    }
  }
}

TEST(JoinedName, HoldsPartsAcrossWhatWasPutInFront) {
  std::u16string expected(1000, u'-');
  std::iota(expected.begin(), expected.end(), u'\x3000');  // no unit twice
  JoinedName name(expected), same(expected), first(std::u16string(u"ab"));
  name.join(same);  // a long name is indexed when something is joined to it
  first.join(name);
  expected = u"ab-" + expected;
  for (std::size_t from = 0; from < 5; ++from) {
    for (std::size_t size = 1; size < 8; ++size) {
      JoinedName part(expected.substr(from, size));
      first.join(part);
      ASSERT_EQ(*first.text(), expected) << from << ' ' << size;
    }
  }
}
