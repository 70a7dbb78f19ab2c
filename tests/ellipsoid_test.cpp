#include "datum/ellipsoid.h"

#include "support.h"

namespace latigo {
namespace {

using support::HalfPi;

TEST(EllipsoidTest, RadiiAndArcsOfWgs84) {
  EXPECT_EQ(WGS84Ellipsoid.f(), 0.0033528106647474805);
  EXPECT_EQ(WGS84Ellipsoid.e2(), 0.0066943799901413165);
  EXPECT_EQ(WGS84Ellipsoid.PrimeVerticalRadius(0), 6378137.0);
  EXPECT_NEAR(WGS84Ellipsoid.MeridianRadius(0), 6335439.3272928195, 1e-8);
  // At the pole both radii are a^2/b.
  EXPECT_NEAR(WGS84Ellipsoid.PrimeVerticalRadius(HalfPi), 6399593.6258, 5e-5);
  EXPECT_NEAR(WGS84Ellipsoid.MeridianRadius(HalfPi), 6399593.6258, 5e-5);
  EXPECT_NEAR(WGS84Ellipsoid.MeridianArc(HalfPi), 1.0001965729528552e7, 1e-8);
  EXPECT_NEAR(WGS84Ellipsoid.MeridianArc(1), 6352852.639043315, 1e-8);
  EXPECT_EQ(WGS84Ellipsoid.MeridianArc(-1), -WGS84Ellipsoid.MeridianArc(1));
}

TEST(EllipsoidTest, ASphereIsAnEllipsoid) {
  const Ellipsoid sphere = Ellipsoid::FromInvFlattening(6371000, 0);
  EXPECT_EQ(sphere.f(), 0);
  EXPECT_NEAR(sphere.MeridianArc(1), 6371000, 1e-9);
  const Geographic back = sphere.ECEFGeo(sphere.GeoECEF({0.5, 2, 1000}));
  EXPECT_NEAR(back.phi, 0.5, 1e-15);
  EXPECT_NEAR(back.h, 1000, 2e-9);
}

}  // namespace
}  // namespace latigo
