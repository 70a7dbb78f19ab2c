// Great circles and rhumb lines, through the exports.
#include "support.h"

namespace {

using namespace support;

TEST(LinesTest, WorkedValues) {
  struct Case {
    decltype(&GCircLL) line;
    double latitude1, longitude1, latitude2, longitude2, distance, azimuth;
  };
  const double north = Rad(10);
  for (const double unit : {1.0, 0.3048}) {
    GeodesyParams params = Utm31();
    params.Unit = unit;
    const Object object = Make(params);
    // clang-format off
    for (const Case& c : {
             Case{GCircLL, 0.5, 0.1, 0.6, 0.3, 1259077.9628407413, 0.9916745687851795},
             Case{GCircLL, 0.9, 0.0, 0.9, 0.1, 397186.5859938389, 1.5316173369423436},
             Case{GCircLL, -0.4, 1.0, -0.41, 0.98, 133365.46927214682, -2.070573488872637},
             Case{GCircLL, 0.7, 0.7, 0.7, 0.7, 0, 0},
             Case{RLineLL, 0, 0, Rad(1), Rad(1), 156899.568453114, 0.7887308567114566},
             Case{RLineLL, Rad(40), Rad(-70), Rad(41), Rad(-69), 139699.5033324502, 0.6519874899657593},
             Case{RLineLL, north, 0, north, Rad(1), 109639.36406815298, HalfPi},
             Case{RLineLL, north, 0, north, Rad(-1), 109639.36406815298, -HalfPi},
             Case{RLineLL, north, 0, north + 1e-9, Rad(1), 109639.36379388711, HalfPi - 5.8e-8},
         }) {
      // clang-format on
      double azimuth = 7;
      const auto distance = [&](double* az) {
        return c.line(object.get(), c.latitude1, c.longitude1, c.latitude2, c.longitude2, az);
      };
      EXPECT_NEAR(distance(&azimuth) * unit, c.distance, 2e-5);
      EXPECT_NEAR(azimuth, c.azimuth, 1e-9);
      EXPECT_EQ(distance(nullptr), distance(&azimuth));
      EXPECT_EQ(GetGeodesyError(), 0);
    }
  }
  double azimuth = 7;
  for (const auto line : {GCircLL, RLineLL}) {
    EXPECT_EQ(line(nullptr, 1, 2, 3, 4, &azimuth), 0.0);
    EXPECT_EQ(GetGeodesyError(), 2);
    EXPECT_EQ(azimuth, 7);
  }
}

}  // namespace
