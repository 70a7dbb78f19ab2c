// The projections, through the exports. Figures are worked values of the published formulas, or follow from symmetry.
#include "support.h"

namespace {

using namespace support;

class ProjectionTest : public Scratch {};

GeodesyParams Changed(GeodesyParams params, const std::function<void(GeodesyParams&)>& change) {
  change(params);
  return params;
}

constexpr double A = 6378137.0;
constexpr double Rf = 298.257223563;
const GeodesyParams OneParallel = {A, Rf, LambertKind, 1, 0.9999, 0, Rad(45), Rad(45), Rad(45), 0, 0, 0};
const GeodesyParams SouthernCone = {A, Rf, LambertKind, 1, 0, Rad(-70), Rad(-42), Rad(-45), Rad(-40), 0, 1000, 0};
const GeodesyParams Sphere = WGS84(SMercKind);

TEST_F(ProjectionTest, WorkedValues) {
  struct Case {
    const char* what;
    GeodesyParams params;
    double latitude, longitude, x, y, tolerance, k, kTolerance;
  };
  // clang-format off
  for (const auto& [what, params, latitude, longitude, x, y, tolerance, k, kTolerance] : {
           Case{"Mercator", MercatorAt30(), 45, 12, 193972.560502, 4848261.343084, 1e-6, 1.223717859, 1e-9},
           Case{"UTM 31", Utm31(), 52, 5, 637294.3658945, 5762926.8129141, 1e-7, 0.9998314066, 1e-10},
           Case{"Texas South Central", Texas(), 28.5, -96, 2963503.9128, 254759.8006, 1e-4, 0.9999685592, 1e-10},
           Case{"one parallel, at the origin", OneParallel, 45, 0, 0, 0, 0, 0.99989999987, 1e-11},
           Case{"sphere", Sphere, 0, 90, 6378388 * HalfPi, 0, 2e-9, 1, 0},
           Case{"sphere, at the Gudermannian of 1", Sphere, 49.60493742085468, 0, 0, 6378388, 1e-6, 1, 0},
       }) {
    // clang-format on
    SCOPED_TRACE(what);
    const Object object = Make(params);
    const XY grid = Forward(object, Rad(latitude), Rad(longitude));
    EXPECT_NEAR(grid.x, x, tolerance);
    EXPECT_NEAR(grid.y, y, tolerance);
    EXPECT_NEAR(Scale(object.get(), grid.x, grid.y), k, kTolerance);
    const LatLon back = Inverse(object, grid.x, grid.y);
    EXPECT_NEAR(back.latitude, Rad(latitude), 2e-11);
    EXPECT_NEAR(back.longitude, Rad(longitude), 2e-11);
  }
}

TEST_F(ProjectionTest, ForwardAndInverseCloseAndTheScaleIsWhatDistancesSay) {
  struct Case {
    const char* what;
    GeodesyParams params;
    double south, north, west, east;  // degrees
    double closure;                   // radians
  };
  for (const auto& [what, params, south, north, west, east, closure] :
       {Case{"Mercator", MercatorAt30(), -85, 85, -169, 189, 2e-12}, Case{"UTM", Utm31(), -80, 84, 0, 6, 1.5e-10},
        Case{"Lambert", Texas(), 20, 60, -130, -65, 2e-12}, Case{"south", SouthernCone, -75, -15, -110, -40, 2e-12},
        Case{"sphere", Sphere, -85, 85, -180, 180, 1e-14}}) {
    SCOPED_TRACE(what);
    const Object object = Make(params);
    for (int i = 0; i <= 400; ++i) {
      const double latitude = Rad(south + (north - south) * (i / 20) / 20);
      const double longitude = Rad(west + (east - west) * (i % 21) / 20);
      const XY grid = Forward(object, latitude, longitude);
      const LatLon back = Inverse(object, grid.x, grid.y);
      ASSERT_EQ(grid.code + back.code, 0);
      EXPECT_NEAR(back.latitude, latitude, closure);
      EXPECT_NEAR(std::remainder(back.longitude - longitude, 2 * Pi), 0, closure / std::cos(latitude));

      // k is the length on the grid of a short way north, over its length on the ellipsoid.
      const XY to = Forward(object, latitude + 1e-5, longitude);
      const XY from = Forward(object, latitude - 1e-5, longitude);
      const double e2 = (2 - 1 / params.InvFlattening) / params.InvFlattening;
      const double w = std::sqrt(1 - e2 * std::sin(latitude) * std::sin(latitude));
      const double M = params.SemiMajorAxis * (1 - e2) / (w * w * w);
      const double k = std::hypot(to.x - from.x, to.y - from.y) * params.Unit / (M * 2e-5);
      EXPECT_NEAR(Scale(object.get(), grid.x, grid.y) / (params.Kind == SMercKind ? 1 : k), 1, 2e-8);
    }
  }
}

TEST_F(ProjectionTest, PolesThatCannotBeShownAreRefusedAndOutputsStayUntouched) {
  struct Case {
    const char* what;
    GeodesyParams params;
    double latitude;
    std::int32_t code;
  };
  const Object other = Make(Utm31());  // keeps the line of the last instance out of the log
  for (const auto& [what, params, latitude, code] :
       {Case{"Mercator, north", MercatorAt30(), HalfPi, 6}, Case{"Mercator, south", MercatorAt30(), -HalfPi, 6},
        Case{"UTM, north", Utm31(), HalfPi, 6}, Case{"UTM, almost north", Utm31(), 1.5707963257948965, 0},
        Case{"cone, apex", Texas(), HalfPi, 0}, Case{"cone, other pole", Texas(), -HalfPi, 6},
        Case{"southern cone, apex", SouthernCone, -HalfPi, 0}, Case{"southern cone, north", SouthernCone, HalfPi, 6},
        Case{"Mercator, beyond the pole", MercatorAt30(), 2, 0}, Case{"cone, beyond the pole", Texas(), 2, 0}}) {
    const XY grid = Forward(Make(params), latitude, 0.1);
    EXPECT_EQ(grid.code, code) << what;
    EXPECT_EQ(grid.x == Untouched && grid.y == Untouched, code != 0) << what;
    EXPECT_EQ(Log(), code == 0 ? Lines{} : Lines{"Log --- Error 6"}) << what;
  }
}

TEST_F(ProjectionTest, OriginsAndLinesOfSymmetryAreHitExactly) {
  struct Case {
    const char* what;
    GeodesyParams params;
    double latitude, longitude, x, y;
  };
  const auto feet49 = Changed(Utm31(), [](auto& p) { p.RefLatitude = Rad(49), p.Unit = 0.3048; });
  for (const auto& [what, params, latitude, longitude, x, y] :
       {Case{"Mercator counts from the equator", MercatorAt30(), 0, Rad(10), 1000, 2000},
        Case{"UTM", Utm31(), 0, Rad(3), 500000, 0},
        Case{"the false origin is never scaled", feet49, Rad(49), Rad(3), 500000, 0},
        Case{"cone", Texas(), Rad(27 + 50.0 / 60), Rad(-99), 2000000, 0},
        Case{"southern cone", SouthernCone, Rad(-42), Rad(-70), 1000, 0}}) {
    const Object object = Make(params);
    const XY grid = Forward(object, latitude, longitude);
    EXPECT_EQ(grid.x, x) << what;
    EXPECT_NEAR(grid.y, y, 1e-8) << what;
    const XY east = Forward(object, latitude + 0.1, longitude + 0.05);
    const XY west = Forward(object, latitude + 0.1, longitude - 0.05);
    EXPECT_NEAR(east.x - x, x - west.x, 1e-8) << what;
    EXPECT_NEAR(east.y, west.y, 1e-8) << what;
    const LatLon back = Inverse(object, x, y);
    EXPECT_NEAR(back.latitude, latitude, 1e-12) << what;
    EXPECT_EQ(back.longitude, longitude) << what;
  }
  for (const double latitude : {-89.9, -45.0, 0.0, 45.0, 89.9}) {
    const Object object = Make(Utm31());
    const XY grid = Forward(object, Rad(latitude), Rad(3));
    EXPECT_EQ(grid.x, 500000);
    EXPECT_EQ(Scale(object.get(), grid.x, grid.y), 0.9996);
  }
  // True to scale on both parallels, in either order, and on the parallel of the other hemisphere.
  const GeodesyParams cone = Texas();
  const auto swapped =
      Changed(cone, [&](auto& p) { p.NorthParallel = cone.SouthParallel, p.SouthParallel = cone.NorthParallel; });
  for (const auto& [params, parallel] : {std::pair{cone, Rad(28 + 23.0 / 60)},
                                         {cone, Rad(30 + 17.0 / 60)},
                                         {swapped, Rad(30 + 17.0 / 60)},
                                         {MercatorAt30(), Rad(-30)}}) {
    const Object object = Make(params);
    const XY grid = Forward(object, parallel, Rad(-97));
    EXPECT_NEAR(Scale(object.get(), grid.x, grid.y), 1, 2e-9);
  }
}

TEST_F(ProjectionTest, MercatorWrapsLongitudesAndEndsAtOnceOnAny) {
  // R of WGS-84 at 30 degrees is 5528256.639293.
  const Object object = Make(Changed(MercatorAt30(), [](auto& p) { p.CentralMeridian = Rad(170); }));
  EXPECT_NEAR(Forward(object, 0, Rad(-170)).x, 5528256.639293 * Rad(20) + 1000, 1e-6);
  EXPECT_NEAR(Inverse(object, 0, 1e9).latitude, HalfPi, 1e-12);
  for (const double lost : {1e5, -1e300, Infinity, NaN}) {
    EXPECT_EQ(std::isfinite(Forward(object, 0.5, lost).x), std::isfinite(lost));
    EXPECT_EQ(Inverse(object, lost, lost).code, 0);
  }
  const Object plain = Make(WGS84(MercatorKind));
  for (const auto& [longitude, turned] :
       {std::pair{Pi, Pi}, {-Pi, -Pi}, {3 * HalfPi, -HalfPi}, {2000.5 * Pi, HalfPi}}) {
    EXPECT_NEAR(Forward(plain, 0, longitude).x, turned * 6378137, 1e-5);
  }
  const Object south = Make(Changed(WGS84(MercatorKind), [](auto& p) { p.RefLatitude = -HalfPi; }));
  const XY tiny = Forward(south, 0.5, 0.5);
  EXPECT_TRUE(tiny.x > 0 && tiny.x < 1e-9) << "the radius at the south pole is tiny, and positive";
}

TEST_F(ProjectionTest, SphereIgnoresEveryParameterAndRefusesNoLatitude) {
  const Object object = Make(Changed(MercatorAt30(), [](auto& p) { p.Kind = SMercKind, p.Unit = 0.3048; }));
  EXPECT_EQ(Forward(object, 0, 4).x, 4 * 6378388.0);
  EXPECT_NEAR(Forward(object, 0, 4).y, 0, 1e-8);
  EXPECT_EQ(Forward(object, -HalfPi, 0).y, -Infinity);
  EXPECT_EQ(Inverse(object, 0, -Infinity).latitude, -HalfPi);
}

TEST_F(ProjectionTest, TransverseMercatorFarFromItsMeridianIsWhatTheSeriesGive) {
  const Object object = Make(Utm31());
  const XY pole = Forward(object, -HalfPi, 1);
  EXPECT_NEAR(pole.x, 500000.0, 1e-6);
  EXPECT_NEAR(pole.y, -9997964.943021, 1e-6);
  EXPECT_EQ(Inverse(object, pole.x, pole.y).code, 10);
  // 30 degrees out the inverse misses the start by 0.0078 degrees of latitude and 0.15 of longitude.
  const XY out = Forward(object, Rad(45), Rad(33));
  const LatLon back = Inverse(object, out.x, out.y);
  EXPECT_NEAR(back.latitude * 180 / Pi, 45 - 0.0078, 5e-5);
  EXPECT_NEAR(back.longitude * 180 / Pi, 33.15, 5e-3);
  const XY lost = Forward(object, Rad(30), Rad(183));
  EXPECT_GT(std::hypot(lost.x, lost.y), 1e7);
  EXPECT_EQ(Inverse(object, lost.x, lost.y).code, 10);
}

TEST_F(ProjectionTest, TransverseMercatorRefusesWhatLiesBeyondItsDomain) {
  const Object object = Make(Utm31());
  const double limit = 9997964.943021;
  for (const double y : {limit + 1e-5, -limit - 1e-5, NaN, Infinity}) {
    const LatLon back = Inverse(object, 500000, y);
    EXPECT_EQ(back.code, 10);
    EXPECT_TRUE(back.latitude == Untouched && back.longitude == Untouched);
    EXPECT_EQ(Scale(object.get(), 500000, y), 1.0);
    EXPECT_EQ(GetGeodesyError(), 10);
  }
  const LatLon beyond = Inverse(object, 1000000, 9900000);
  EXPECT_EQ(beyond.code, 10);
  EXPECT_NEAR(beyond.latitude, -14.26, 0.005) << "the latitude is written before it is found to be none";
  EXPECT_EQ(beyond.longitude, Untouched);
}

TEST_F(ProjectionTest, TransverseMercatorWrapsLongitudesOnce) {
  const Object object = Make(Changed(Utm31(), [](auto& p) { p.CentralMeridian = Rad(179); }));
  const XY grid = Forward(object, Rad(10), Rad(-179));
  EXPECT_TRUE(grid.x > 700000 && grid.x < 800000);
  EXPECT_NEAR(Inverse(object, grid.x, grid.y).longitude, Rad(-179), 1e-11);
  for (const double meridian : {Pi, -Pi}) {
    const Object edge = Make(Changed(Utm31(), [=](auto& p) { p.CentralMeridian = meridian; }));
    EXPECT_EQ(Inverse(edge, 500000, 100000).longitude, -Pi) << "both ends come out as the western one";
  }
}

TEST_F(ProjectionTest, LambertAtItsApexAndBehindIt) {
  for (const auto& [params, apex] : {std::pair{OneParallel, HalfPi}, {SouthernCone, -HalfPi}}) {
    const Object object = Make(params);
    const XY grid = Forward(object, apex, 1);
    const LatLon back = Inverse(object, grid.x, grid.y);
    EXPECT_EQ(back.code, 0);
    EXPECT_EQ(back.latitude, apex);
    EXPECT_TRUE(std::isnan(back.longitude));
    EXPECT_TRUE(std::isnan(Scale(object.get(), grid.x, grid.y)));
  }
  // The arc tangent of the quotient sees cone angles within 90 degrees only: 130 comes back as 130 - 180 / n.
  const Object object = Make(OneParallel);
  const XY behind = Forward(object, Rad(50), Rad(130));
  const LatLon back = Inverse(object, behind.x, behind.y);
  EXPECT_NEAR(back.latitude, Rad(50), 1e-11);
  EXPECT_NEAR(back.longitude * 180 / Pi, 130 - 180 / 0.7071067811865475, 1e-9);
  EXPECT_GT(std::fabs(Forward(object, Rad(50), Rad(350)).x - Forward(object, Rad(50), Rad(-10)).x), 1e5)
      << "longitudes do not wrap";
}

TEST_F(ProjectionTest, LambertGivesUpAfterTenPasses) {
  // An ellipsoid so flat that the latitude comes near by a third or so a pass.
  const LatLon back = Inverse(Make(Changed(Texas(), [](auto& p) { p.InvFlattening = 2; })), 3000000, 254759);
  EXPECT_EQ(back.code, 11);
  EXPECT_EQ(Log()[0], "Log --- Error 11");
  EXPECT_TRUE(std::fabs(back.latitude) < HalfPi && back.longitude < 0) << "the last values stand";
}

}  // namespace
