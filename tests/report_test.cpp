#include <gmock/gmock.h>

#include <GeographicLib/Geodesic.hpp>
#include <cmath>
#include <map>
#include <random>

#include "report/ImportReport.hpp"
#include "report/lineLength.hpp"
#include "tests/fixture/Import.hpp"

namespace {

// Out of d there is a way, but only into e: to mend e mends both. So it is with h, which leads to
// i.
TEST(Traps, AreHighWhereTheyBegin) {
  Import const import(Town("a-b-c-d-e\n"
                           "|/\n"
                           "f-h-i\n")
                          .way("abcfa")
                          .way("ac")
                          .way("cd", "oneway=yes")
                          .way("de", "oneway=yes")
                          .way("hf", "oneway=yes")
                          .way("ih", "oneway=yes"),
                      {.joining = Joining::none});
  std::map<OpenStreetMap::Id, Severity> severities;
  ImportReport const report = reportOn(import.importer);
  for (Finding const& trap : report.findings[static_cast<std::size_t>(Finding::Kind::traps)]) {
    severities[trap.nodes.front()] = trap.severity;
  }
  EXPECT_THAT(severities, testing::ElementsAre(
                              testing::Pair(4, Severity::low), testing::Pair(5, Severity::high),
                              testing::Pair(8, Severity::low), testing::Pair(9, Severity::high)));
}

TEST(Distance, IsThatOfTheGeodesic) {
  auto const& earth = GeographicLib::Geodesic::WGS84();
  std::mt19937 random(1);
  std::uniform_real_distribution<double> share(0.0, 1.0);
  for (int i = 0; i < 20'000; ++i) {
    double const latitude = 179.0 * share(random) - 89.5;
    double const longitude = 360.0 * share(random) - 180.0;
    double const metres = std::pow(10.0, 6.0 * share(random) - 1.0);
    double latitude2 = 0.0;
    double longitude2 = 0.0;
    double expected = 0.0;
    earth.Direct(latitude, longitude, 360.0 * share(random), metres, latitude2, longitude2);
    earth.Inverse(latitude, longitude, latitude2, longitude2, expected);
    EXPECT_NEAR(distance(latitude, longitude, latitude2, longitude2), expected, 2e-8);
  }
  EXPECT_EQ(distance(1.0, 2.0, 1.0, 2.0), 0.0);
}

}  // namespace
