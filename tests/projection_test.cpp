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
constexpr double Bessel = 6377397.155, BesselRf = 299.1528128;
const GeodesyParams Dutch = {Bessel, BesselRf, 4, 0.3048, 0.9999079, Rad(5.38763888889), Rad(52.15616055555),
                             0,      0,        0, 155000, 463000};
const GeodesyParams Swiss = {Bessel, BesselRf, 5, 1,      0,     Rad(7.43958333333), Rad(46.95240555556),
                             0,      0,        0, 600000, 200000};
const GeodesyParams Borneo = {6377298.556, 300.8017, 6, 1, 0.99984, Rad(115), Rad(4), 0, 0, Rad(53.3158), 0, 0};
const GeodesyParams BorneoRso = {6377298.556, 300.8017, 7, 1, 0.99984, Rad(115), Rad(4), 0, 0, Rad(53.3158), 0, 0};
const GeodesyParams Guam = {6378206.4, 294.978698, 8, 1, 0, Rad(144.7487507), Rad(13.47246635), 0, 0, 0, 50000, 50000};
const GeodesyParams Yap = {
    6378206.4, 294.978698, 8, 1,     0,    Rad(138 + 10 / 60.0 + 7.48 / 3600), Rad(9 + 32 / 60.0 + 48.15 / 3600),
    0,         0,          0, 40000, 60000};
const GeodesyParams AlbersUsa = {A, Rf, 10, 1, 0.5, Rad(-96), Rad(23), Rad(29.5), Rad(45.5), 0, 0, 0};
const GeodesyParams SouthernAlbers = {A, Rf, 10, 2, 0, Rad(20), Rad(-20), Rad(-10), Rad(-40), 0, 10, 20};
const GeodesyParams CassiniAt52 = {A, Rf, 11, 1, 0, Rad(1), Rad(52), 0, 0, 0, 0, 0};
const GeodesyParams Ups = {A, Rf, 12, 0.3048, 0.994, 0, HalfPi, 0, 0, 0, 2000000, 2000000};
const GeodesyParams TruePolar = {A, Rf, 12, 1, 0.5, 0, Rad(70), 0, 0, 0, 0, 0};
const GeodesyParams SouthPolar = {A, Rf, 12, 1, 0, Rad(50), Rad(-71), 0, 0, 0, 0, 0};
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
           Case{"Dutch grid", Dutch, 53, 6, 196105.283, 557057.739, 1e-3, NaN, 0},
           Case{"Dutch grid, origin", Dutch, 52.15616055555, 5.38763888889, 155000, 463000, 1e-8, 0.9999079, 1e-15},
           Case{"Swiss grid", Swiss, 46.04413, 8.730497, 699914.724, 99864.859, 1e-3, 1, 0},
           Case{"Hotine", Borneo, 5.38, 115.8, 680566.188, 593555.350, 1e-3, NaN, 0},
           Case{"RSO", BorneoRso, 5.38, 115.8, 678638.671, 595758.209, 1e-3, NaN, 0},
           Case{"Guam", Guam, 13.33903606, 144.63533131, 37712.473, 35241.754, 1e-3, 1, 0},
           Case{"Guam, north", Guam, 20, 144.7487507, 50000, 772345.897, 1e-3, 1, 0},
           Case{"Guam, south", Guam, 5, 144.7487507, 50000, -887038.489, 1e-3, 1, 0},
           Case{"Yap", Yap, 9.596525833333, 138.193030, 42665.904, 65509.822, 2e-3, 1, 0},
           Case{"Albers", AlbersUsa, 0, -96, 0, -2359081.007, 1e-3, NaN, 0},
           Case{"Cassini", CassiniAt52, 53, 2, 67135.052, 111744.747, 1e-3, 1, 0},
           Case{"UPS north", Ups, 73, 44, 3320416.747, 632668.431, 1e-3, NaN, 0},
           Case{"UPS, far", Ups, -70, 10, 14367131.795, -68137489.710, 1e-2, NaN, 0},
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
    const double factor = Scale(object.get(), grid.x, grid.y);
    EXPECT_TRUE(std::isnan(k) || std::fabs(factor - k) <= kTolerance) << factor;
    const LatLon back = Inverse(object, grid.x, grid.y);
    const double closure = params.Kind == 8 ? 2e-8 : params.Kind == 5 ? 6e-10 : params.Kind == 11 ? 1e-10 : 2e-11;
    EXPECT_NEAR(back.latitude, Rad(latitude), closure);
    EXPECT_NEAR(back.longitude, Rad(longitude), closure);
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
        Case{"sphere", Sphere, -85, 85, -180, 180, 1e-14}, Case{"Dutch", Dutch, 33, 71, -34, 44, 1e-11},
        Case{"Swiss", Swiss, 44, 50, 3, 12, 6e-10}, Case{"Hotine", Borneo, -8, 16, 103, 127, 1e-10},
        Case{"RSO", BorneoRso, -8, 16, 103, 127, 1e-10}, Case{"Guam", Guam, 12.5, 14.4, 143.8, 145.7, 1e-12},
        Case{"Albers", AlbersUsa, -20, 80, -156, -36, 1e-12}, Case{"south", SouthernAlbers, -80, 20, -40, 80, 1e-12},
        Case{"Cassini", CassiniAt52, 0, 60, 0, 2, 2e-10}, Case{"UPS", Ups, 50, 89.5, -179, 179, 1e-12},
        Case{"true polar", TruePolar, 50, 89.5, -179, 179, 1e-12},
        Case{"south", SouthPolar, -89.5, -50, -129, 229, 1e-12}}) {
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
      const bool metres = params.Kind == 4 || params.Kind == 12;
      const double k = std::hypot(to.x - from.x, to.y - from.y) * (metres ? 1 : params.Unit) / (M * 2e-5);
      const bool unitScale = params.Kind == SMercKind || params.Kind == 5 || params.Kind == 8 || params.Kind == 11;
      if (params.Kind != 10) {
        EXPECT_NEAR(Scale(object.get(), grid.x, grid.y) / (unitScale ? 1 : k), 1, params.Kind == 4 ? 2e-2 : 2e-8);
      }
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

TEST_F(ProjectionTest, AlbersEndsWhereItsSeriesDo) {
  const Object object = Make(AlbersUsa);
  for (const auto& [latitude, back, code] : {std::tuple{89.92, 89.92, 0}, {89.94, 89.94, 11}, {89.99, 89.9899, 11}}) {
    const XY grid = Forward(object, Rad(latitude), Rad(-90));
    const LatLon found = Inverse(object, grid.x, grid.y);
    EXPECT_EQ(found.code, code) << latitude;
    EXPECT_NEAR(found.latitude * 180 / Pi, back, 5e-5);
  }
  const LatLon far = Inverse(object, 0, -14000000);
  EXPECT_TRUE(far.code == 10 && far.latitude == Untouched && far.longitude != Untouched);
  EXPECT_EQ(Scale(object.get(), 0, -14000000), 1.0);
  EXPECT_EQ(GetGeodesyError(), 10);
  for (const auto& [latitude, k] : {std::pair{45.5, 0.9954667405}, {29.5, 0.9982206761}}) {
    const XY grid = Forward(object, Rad(latitude), Rad(-96));
    EXPECT_NEAR(Scale(object.get(), grid.x, grid.y), k, 1e-10);
  }
}

TEST_F(ProjectionTest, PolarStereographicAtItsPoleAndItsLatitudeOfTrueScale) {
  const Object ups = Make(Ups);
  EXPECT_EQ(Scale(ups.get(), 2000000, 2000000), 0.994) << "the limit at the pole";
  for (const auto& [x, y, longitude] :
       {std::tuple{2e6, 2e6, 0.0}, {2e6, 1e6, 0.0}, {2e6, 3e6, Pi}, {3e6, 2e6, HalfPi}}) {
    EXPECT_EQ(Inverse(ups, x, y).longitude, longitude);
  }
  const Object polar = Make(TruePolar);
  GeodesyParams found{};
  GetGeodesyParams(polar.get(), &found, nullptr, nullptr);
  EXPECT_NEAR(double{found.ScaleFactor}, 0.9698581903, 1e-10) << "worked out in place of the given one";
  const XY grid = Forward(polar, Rad(70), 1);
  EXPECT_NEAR(Scale(polar.get(), grid.x, grid.y), 1, 1e-12);
  for (const auto& [offset, kept] : {std::pair{0.9e-5, true}, {1.1e-5, false}}) {
    GeodesyParams params = TruePolar;
    params.RefLatitude = HalfPi - offset;
    const Object near = Make(params);
    GetGeodesyParams(near.get(), &found, nullptr, nullptr);
    EXPECT_EQ(found.ScaleFactor == 0.5, kept);
  }
}

TEST_F(ProjectionTest, ObliqueProjectionsAtTheirCentresAndBeyondAQuarterTurn) {
  const auto hotine = [](double phi0, double azimuth) {
    return Make({A, Rf, 6, 1, 1, Rad(10), Rad(phi0), 0, 0, Rad(azimuth), 0, 0});
  };
  const XY centre = Forward(hotine(45, 30), Rad(45), Rad(10));
  EXPECT_NEAR(centre.x, 2730590.87, 0.01);
  EXPECT_NEAR(centre.y, 4729522.12, 0.01);
  const Object limit = hotine(45, 90);
  const XY east = Forward(limit, Rad(45), Rad(20));
  EXPECT_NEAR(Inverse(limit, east.x, east.y).longitude * 180 / Pi, -159.85, 0.01);
  EXPECT_NEAR(Forward(hotine(45, 0), Rad(50), Rad(10)).x, 0, 1e-8) << "u runs north along the meridian";
  for (const auto& [phi0, azimuth] : {std::pair{0.0, 90.0}, {0.0, 30.0}, {45.0, 90.0}, {-45.0, -90.0}}) {
    EXPECT_TRUE(std::isfinite(Forward(hotine(phi0, azimuth), Rad(phi0 / 2), Rad(15)).x)) << phi0 << " " << azimuth;
  }
  for (const auto& [params, latitude, back] : {std::tuple{Dutch, 52.0, 90.69}, {Swiss, 47.0, 94.75}}) {
    const Object object = Make(params);
    const XY grid = Forward(object, Rad(latitude), Rad(100));
    EXPECT_NEAR(Inverse(object, grid.x, grid.y).longitude * 180 / Pi, back, 5e-3);
    EXPECT_NEAR(Inverse(object, grid.x, grid.y).latitude * 180 / Pi, latitude, 1e-4);
  }
  const Object dutch = Make(Dutch);
  const XY pole = Forward(dutch, -HalfPi, 0);
  EXPECT_TRUE(std::isnan(Inverse(dutch, pole.x, pole.y).latitude));
}

TEST_F(ProjectionTest, AzimuthalDistancesFromAPoleAreTrueOnEverySide) {
  for (const auto& [phi0, latitude, longitude, y] : {std::tuple{90, 80, 30, -1116825.857},
                                                     {90, 80, 210, 1116825.857},
                                                     {-90, -80, 30, 1116825.857},
                                                     {-90, -80, 210, -1116825.857}}) {
    const Object object = Make({A, Rf, 8, 1, 0, Rad(30), Rad(phi0), 0, 0, 0, 0, 0});
    const XY grid = Forward(object, Rad(latitude), Rad(longitude));
    EXPECT_NEAR(grid.x, 0, 1e-3);
    EXPECT_NEAR(grid.y, y, 1e-3);
    EXPECT_NEAR(std::cos(Inverse(object, grid.x, grid.y).longitude - Rad(longitude)), 1, 1e-12);
  }
  const LatLon origin = Inverse(Make(Guam), 50000, 50000);
  EXPECT_TRUE(origin.latitude == Rad(13.47246635) && origin.longitude == Rad(144.7487507));
}

TEST_F(ProjectionTest, EveryKindEndsOnWhateverNumbersCome) {
  const double tiny = std::numeric_limits<double>::denorm_min();
  const double huge = std::numeric_limits<double>::max();
  for (const GeodesyParams& good : {MercatorAt30(), Utm31(), Texas(), Sphere, Dutch, Swiss, Borneo, BorneoRso, Guam,
                                    AlbersUsa, CassiniAt52, Ups, TruePolar}) {
    for (const double f : {good.InvFlattening, 1.5, 0.7, -3.0, Infinity, NaN}) {
      GeodesyParams params = good;
      params.InvFlattening = f;
      const Object object(CreateGeodesy(&params));
      if (!object) continue;
      for (const double a : {0.0, -0.0, tiny, 1.0, HalfPi, -HalfPi, -Pi, 1e7, -1e300, huge, -Infinity, NaN}) {
        for (const double b : {0.0, tiny, -1.0, Pi, -1e7, huge, Infinity, NaN}) {
          const std::int32_t forward = Forward(object, a, b).code;
          const std::int32_t inverse = Inverse(object, a, b).code;
          Scale(object.get(), b, a);
          EXPECT_TRUE(forward == 0 || forward == 6) << std::int32_t{good.Kind} << " " << a << " " << b;
          EXPECT_TRUE(inverse == 0 || inverse == 10 || inverse == 11)
              << std::int32_t{good.Kind} << " " << a << " " << b;
        }
      }
    }
  }
}

TEST_F(ProjectionTest, LambertGivesUpAfterTenPasses) {
  // An ellipsoid so flat that the latitude comes near by a third or so a pass.
  const LatLon back = Inverse(Make(Changed(Texas(), [](auto& p) { p.InvFlattening = 2; })), 3000000, 254759);
  EXPECT_EQ(back.code, 11);
  EXPECT_EQ(Log()[0], "Log --- Error 11");
  EXPECT_TRUE(std::fabs(back.latitude) < HalfPi && back.longitude < 0) << "the last values stand";
}

}  // namespace
