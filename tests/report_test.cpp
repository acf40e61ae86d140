#include <gtest/gtest.h>

#include <GeographicLib/Geodesic.hpp>
#include <cmath>
#include <random>

#include "report/lineLength.hpp"

namespace {

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
