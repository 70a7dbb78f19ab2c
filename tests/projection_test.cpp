// The projections, through the exports. Figures are worked values of the published formulas, or follow from symmetry.
#include "support.h"

namespace {

using namespace support;

class ProjectionTest : public Scratch {};

GeodesyParams LambertOneParallel() {
  GeodesyParams params = WGS84(LambertKind);
  params.NorthParallel = params.SouthParallel = params.RefLatitude = Rad(45);
  params.ScaleFactor = 0.9999;
  params.FalseEasting = 700000;
  params.FalseNorthing = 6600000;
  return params;
}

GeodesyParams SouthernLambert() {
  GeodesyParams params = WGS84(LambertKind);
  params.NorthParallel = Rad(-45);
  params.SouthParallel = Rad(-40);
  params.RefLatitude = Rad(-42);
  params.CentralMeridian = Rad(-70);
  params.FalseEasting = 1000;
  params.FalseNorthing = 2000;
  return params;
}

// Snyder's examples are given to 0.1 m.
GeodesyParams SnyderClarke(std::int32_t kind) {
  GeodesyParams params = WGS84(kind);
  params.SemiMajorAxis = 6378206.4;
  params.InvFlattening = 294.9786982;
  return params;
}

GeodesyParams SnyderMercator() {
  GeodesyParams params = SnyderClarke(MercatorKind);
  params.CentralMeridian = Rad(-180);
  return params;
}

GeodesyParams SnyderTransverse() {
  GeodesyParams params = SnyderClarke(TransverseKind);
  params.ScaleFactor = 0.9996;
  params.CentralMeridian = Rad(-75);
  return params;
}

GeodesyParams SnyderLambert() {
  GeodesyParams params = SnyderClarke(LambertKind);
  params.NorthParallel = Rad(33);
  params.SouthParallel = Rad(45);
  params.RefLatitude = Rad(23);
  params.CentralMeridian = Rad(-96);
  return params;
}

TEST_F(ProjectionTest, WorkedValues) {
  struct Case {
    const char* what;
    GeodesyParams params;
    double latitude, longitude;  // degrees
    double x, y, tolerance;
    double k, kTolerance;
  };
  const Case cases[] = {
      {"Mercator", MercatorAt30(), 45, 12, 193972.560502, 4848261.343084, 1e-6, 1.223717859, 1e-9},
      {"UTM 31", Utm31(), 52, 5, 637294.3658945, 5762926.8129141, 1e-7, 0.9998314066, 1e-10},
      {"Texas South Central", Texas(), 28.5, -96, 2963503.9128, 254759.8006, 1e-4, 0.9999685592, 1e-10},
      {"PP 1395 p. 267", SnyderMercator(), 35, -75, 11688673.7, 4139145.6, 0.1, 1.2194146, 1e-7},
      {"PP 1395 p. 269", SnyderTransverse(), 40.5, -73.5, 127106.5, 4484124.4, 0.1, 0.9997989, 1e-7},
      {"PP 1395 p. 296", SnyderLambert(), 35, -75, 1894410.9, 1564649.5, 0.1, 0.9970171, 1e-7},
      {"one parallel, at the origin", LambertOneParallel(), 45, 0, 700000, 6600000, 2e-9, 0.99989999987, 1e-11},
      {"sphere", WGS84(SMercKind), 0, 90, 6378388 * HalfPi, 0, 2e-9, 1, 0},
      {"sphere, at the Gudermannian of 1", WGS84(SMercKind), 49.60493742085468, 0, 0, 6378388, 1e-6, 1, 0},
  };
  for (const auto& [what, params, latitude, longitude, x, y, tolerance, k, kTolerance] : cases) {
    SCOPED_TRACE(what);
    const Object object = Make(params);
    double gridX = 0;
    double gridY = 0;
    ASSERT_EQ(GeoXY(object.get(), &gridX, &gridY, Rad(latitude), Rad(longitude)), 1);
    EXPECT_NEAR(gridX, x, tolerance);
    EXPECT_NEAR(gridY, y, tolerance);
    EXPECT_NEAR(Scale(object.get(), gridX, gridY), k, kTolerance);
    double phi = 0;
    double lambda = 0;
    ASSERT_EQ(XYGeo(object.get(), gridX, gridY, &phi, &lambda), 1);
    EXPECT_NEAR(phi, Rad(latitude), 2e-11);
    EXPECT_NEAR(lambda, Rad(longitude), 2e-11);
  }
}

TEST_F(ProjectionTest, ForwardAndInverseCloseOverTheAreaAndScaleIsWhatDistancesSay) {
  struct Case {
    const char* what;
    GeodesyParams params;
    double south, north, west, east;  // degrees
    double closure;                   // radians
  };
  const Case cases[] = {
      {"Mercator", MercatorAt30(), -85, 85, -169, 189, 2e-12},
      {"UTM", Utm31(), -80, 84, 0, 6, 1.5e-10},
      {"Lambert", Texas(), 20, 60, -130, -65, 2e-12},
      {"Lambert, southern", SouthernLambert(), -75, -15, -110, -40, 2e-12},
      {"sphere", WGS84(SMercKind), -85, 85, -180, 180, 1e-14},
  };
  for (const auto& [what, params, south, north, west, east, closure] : cases) {
    SCOPED_TRACE(what);
    const Object object = Make(params);
    for (int i = 0; i <= 20; ++i) {
      for (int j = 0; j <= 20; ++j) {
        const double latitude = Rad(south + (north - south) * i / 20);
        const double longitude = Rad(west + (east - west) * j / 20);
        double x = 0;
        double y = 0;
        double phi = 0;
        double lambda = 0;
        ASSERT_EQ(GeoXY(object.get(), &x, &y, latitude, longitude), 1);
        ASSERT_EQ(XYGeo(object.get(), x, y, &phi, &lambda), 1);
        EXPECT_NEAR(phi, latitude, closure);
        EXPECT_NEAR(std::remainder(lambda - longitude, 2 * Pi), 0, closure / std::cos(latitude));

        // k is the length on the grid of a short way north, over its length on the ellipsoid.
        const double step = 1e-5;
        double xNorth = 0;
        double yNorth = 0;
        double xSouth = 0;
        double ySouth = 0;
        GeoXY(object.get(), &xNorth, &yNorth, latitude + step, longitude);
        GeoXY(object.get(), &xSouth, &ySouth, latitude - step, longitude);
        const double e2 = (2 - 1 / params.InvFlattening) / params.InvFlattening;
        const double w = std::sqrt(1 - e2 * std::sin(latitude) * std::sin(latitude));
        const double meridianRadius = params.SemiMajorAxis * (1 - e2) / (w * w * w);
        const double k = std::hypot(xNorth - xSouth, yNorth - ySouth) * params.Unit / (meridianRadius * 2 * step);
        if (params.Kind != SMercKind) {
          EXPECT_NEAR(Scale(object.get(), x, y) / k, 1, 2e-8);
        }
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
  const Case cases[] = {
      {"Mercator, north", MercatorAt30(), HalfPi, 6},
      {"Mercator, south", MercatorAt30(), -HalfPi, 6},
      {"UTM, north", Utm31(), HalfPi, 6},
      {"UTM, south", Utm31(), -HalfPi, 0},
      {"UTM, almost north", Utm31(), 1.5707963257948965, 0},
      {"cone, apex", Texas(), HalfPi, 0},
      {"cone, other pole", Texas(), -HalfPi, 6},
      {"southern cone, apex", SouthernLambert(), -HalfPi, 0},
      {"southern cone, other pole", SouthernLambert(), HalfPi, 6},
      {"Mercator, beyond the pole", MercatorAt30(), 2, 0},
      {"cone, beyond the pole", Texas(), 2, 0},
  };
  const Object other = Make(Utm31());  // keeps the line of the last instance out of the log
  for (const auto& [what, params, latitude, code] : cases) {
    SCOPED_TRACE(what);
    const Object object = Make(params);
    double x = -1;
    double y = -2;
    EXPECT_EQ(GeoXY(object.get(), &x, &y, latitude, 0.1), code == 0 ? 1 : 0);
    EXPECT_EQ(GetGeodesyError(), code);
    EXPECT_EQ(x == -1 && y == -2, code != 0);
    EXPECT_EQ(Log(), code == 0 ? Lines{} : Lines{"Log --- Error 6"});
  }
}

TEST_F(ProjectionTest, MercatorOnItsLinesOfSymmetry) {
  const Object object = Make(MercatorAt30());
  double x = 0;
  double y = 0;
  double phi = 0;
  double lambda = 0;
  GeoXY(object.get(), &x, &y, 0, Rad(10));
  EXPECT_EQ(x, 1000);
  EXPECT_EQ(y, 2000) << "northings count from the equator, whatever the latitude of true scale";
  EXPECT_EQ(XYGeo(object.get(), x, y, &phi, &lambda), 1);
  EXPECT_EQ(phi, 0);
  EXPECT_EQ(lambda, Rad(10));
  GeoXY(object.get(), &x, &y, Rad(-30), Rad(10));
  EXPECT_NEAR(Scale(object.get(), x, y), 1, 1e-12);
  // R of WGS-84 at 30 degrees is 5528256.639293.
  GeodesyParams params = MercatorAt30();
  params.CentralMeridian = Rad(170);
  GeoXY(Make(params).get(), &x, &y, 0, Rad(-170));
  EXPECT_NEAR(x, 5528256.639293 * Rad(20) + 1000, 1e-6) << "longitudes wrap to the near side";
  EXPECT_EQ(XYGeo(object.get(), 0, 1e9, &phi, &lambda), 1);
  EXPECT_NEAR(phi, HalfPi, 1e-12);

  params = WGS84(MercatorKind);
  params.RefLatitude = -HalfPi;
  EXPECT_EQ(GeoXY(Make(params).get(), &x, &y, 0.5, 0.5), 1);
  EXPECT_TRUE(x > 0 && x < 1e-9) << "the radius at the south pole is tiny, and positive";
}

TEST_F(ProjectionTest, HugeAndLostLongitudesEndAtOnce) {
  const Object object = Make(MercatorAt30());
  for (const double longitude : {1e5, -1e300, Infinity, NaN}) {
    double x = 0;
    double y = 0;
    double phi = 0;
    EXPECT_EQ(GeoXY(object.get(), &x, &y, 0.5, longitude), 1);
    EXPECT_EQ(std::isfinite(x), std::isfinite(longitude));
    EXPECT_EQ(XYGeo(object.get(), longitude, longitude, &phi, &x), 1);
  }
  // Half a turn stays on its own side; three halves of a turn come back to one.
  GeodesyParams params = WGS84(MercatorKind);
  const Object plain = Make(params);
  for (const auto& [longitude, turned] : {std::pair{Pi, Pi}, {-Pi, -Pi}, {3 * HalfPi, -HalfPi}, {2001 * Pi, -Pi}}) {
    double x = 0;
    double y = 0;
    GeoXY(plain.get(), &x, &y, 0, longitude);
    EXPECT_NEAR(std::fabs(x), std::fabs(turned) * 6378137, 1e-5);
    if (std::fabs(longitude) < 10) {
      EXPECT_EQ(x > 0, turned > 0);
    }
  }
}

TEST_F(ProjectionTest, SphereIgnoresEveryParameter) {
  GeodesyParams params = MercatorAt30();
  params.Kind = SMercKind;
  params.Unit = 0.3048;
  params.ScaleFactor = 2;
  const Object object = Make(params);
  double x = 0;
  double y = 0;
  EXPECT_EQ(GeoXY(object.get(), &x, &y, 0, 4), 1);
  EXPECT_EQ(x, 4 * 6378388.0);
  EXPECT_NEAR(y, 0, 1e-8);
  EXPECT_EQ(GeoXY(object.get(), &x, &y, -HalfPi, 0), 1) << "no latitude is refused";
  EXPECT_EQ(y, -Infinity);
  double phi = 1;
  double lambda = 1;
  EXPECT_EQ(XYGeo(object.get(), 0, y, &phi, &lambda), 1);
  EXPECT_EQ(phi, -HalfPi);
  EXPECT_EQ(lambda, 0);
}

TEST_F(ProjectionTest, TransverseMercatorOnItsMeridianAndAtItsOrigin) {
  GeodesyParams params = Utm31();
  params.RefLatitude = Rad(49);
  params.FalseNorthing = -100000;
  params.Unit = 0.3048;
  const Object object = Make(params);
  double x = 0;
  double y = 0;
  GeoXY(object.get(), &x, &y, Rad(49), Rad(3));
  EXPECT_EQ(x, 500000) << "the false origin is grid units, never scaled";
  EXPECT_NEAR(y, -100000, 1e-8);
  for (const double latitude : {-89.9, -45.0, 0.0, 45.0, 89.9}) {
    GeoXY(object.get(), &x, &y, Rad(latitude), Rad(3));
    EXPECT_EQ(x, 500000);
    EXPECT_EQ(Scale(object.get(), x, y), 0.9996);
  }
  // East and west of the meridian mirror each other.
  double xWest = 0;
  double yWest = 0;
  GeoXY(object.get(), &x, &y, Rad(52), Rad(5));
  GeoXY(object.get(), &xWest, &yWest, Rad(52), Rad(1));
  EXPECT_NEAR(x + xWest, 1000000, 1e-8);
  EXPECT_NEAR(y, yWest, 1e-8);
}

TEST_F(ProjectionTest, TransverseMercatorFarFromItsMeridianIsWhatTheSeriesGive) {
  const Object object = Make(Utm31());
  double x = 0;
  double y = 0;
  double phi = 0;
  double lambda = 0;
  EXPECT_EQ(GeoXY(object.get(), &x, &y, -HalfPi, 1), 1);
  EXPECT_NEAR(x, 500000.0, 1e-6);
  EXPECT_NEAR(y, -9997964.943021, 1e-6);

  // 30 degrees out the inverse misses the start by 0.0078 degrees of latitude and 0.15 of longitude.
  ASSERT_EQ(GeoXY(object.get(), &x, &y, Rad(45), Rad(33)), 1);
  ASSERT_EQ(XYGeo(object.get(), x, y, &phi, &lambda), 1);
  EXPECT_NEAR(phi * 180 / Pi, 45 - 0.0078, 5e-5);
  EXPECT_NEAR(lambda * 180 / Pi, 33.15, 5e-3);

  ASSERT_EQ(GeoXY(object.get(), &x, &y, Rad(30), Rad(183)), 1);
  EXPECT_GT(std::hypot(x, y), 1e7);
  EXPECT_EQ(XYGeo(object.get(), x, y, &phi, &lambda), 0);
}

TEST_F(ProjectionTest, TransverseMercatorRefusesWhatLiesBeyondItsDomain) {
  const Object object = Make(Utm31());
  struct Case {
    double x, y;
    bool latitudeWritten;
  };
  for (const auto& [x, y, latitudeWritten] :
       {Case{500000, 9997964.943021 + 1e-5, false}, Case{0, -9997964.943021 - 1e-5, false}, Case{500000, NaN, false},
        Case{500000, Infinity, false}, Case{1000000, 9900000, true}}) {
    double phi = 7;
    double lambda = 8;
    EXPECT_EQ(XYGeo(object.get(), x, y, &phi, &lambda), 0);
    EXPECT_EQ(GetGeodesyError(), 10);
    EXPECT_EQ(lambda, 8);
    EXPECT_NEAR(phi, latitudeWritten ? -14.26 : 7, 0.005);
    if (!latitudeWritten) {
      EXPECT_EQ(Scale(object.get(), x, y), 1.0);
      EXPECT_EQ(GetGeodesyError(), 10);
    }
  }
}

TEST_F(ProjectionTest, TransverseMercatorWrapsLongitudesOnce) {
  GeodesyParams params = Utm31();
  params.CentralMeridian = Rad(179);
  const Object object = Make(params);
  double x = 0;
  double y = 0;
  double phi = 0;
  double lambda = 0;
  GeoXY(object.get(), &x, &y, Rad(10), Rad(-179));
  EXPECT_GT(x, 500000);
  EXPECT_LT(x, 800000);
  EXPECT_EQ(XYGeo(object.get(), x, y, &phi, &lambda), 1);
  EXPECT_NEAR(lambda, Rad(-179), 1e-11);
  for (const double meridian : {Pi, -Pi}) {
    params.CentralMeridian = meridian;
    EXPECT_EQ(XYGeo(Make(params).get(), 500000, 100000, &phi, &lambda), 1);
    EXPECT_EQ(lambda, -Pi) << "both ends come out as the western one";
  }
}

TEST_F(ProjectionTest, LambertAtItsApexAndBehindIt) {
  double x = 0;
  double y = 0;
  double phi = 0;
  double lambda = 0;
  for (auto [params, apex] : {std::pair{LambertOneParallel(), HalfPi}, {SouthernLambert(), -HalfPi}}) {
    params.FalseNorthing = 0;  // so that the apex is hit to the last digit
    const Object object = Make(params);
    ASSERT_EQ(GeoXY(object.get(), &x, &y, apex, 1), 1);
    EXPECT_EQ(x, params.FalseEasting);
    ASSERT_EQ(XYGeo(object.get(), x, y, &phi, &lambda), 1);
    EXPECT_EQ(phi, apex);
    EXPECT_TRUE(std::isnan(lambda));
    EXPECT_TRUE(std::isnan(Scale(object.get(), x, y)));
    EXPECT_EQ(GetGeodesyError(), 0);
    // The parallel of the origin meets the central meridian at the false origin.
    ASSERT_EQ(GeoXY(object.get(), &x, &y, params.RefLatitude, params.CentralMeridian), 1);
    EXPECT_EQ(x, params.FalseEasting);
    EXPECT_NEAR(y, params.FalseNorthing, 1e-8);
  }
  // The arc tangent of the quotient sees cone angles within 90 degrees only: 130 comes back as 130 - 180 / n.
  const Object object = Make(LambertOneParallel());
  ASSERT_EQ(GeoXY(object.get(), &x, &y, Rad(50), Rad(130)), 1);
  ASSERT_EQ(XYGeo(object.get(), x, y, &phi, &lambda), 1);
  EXPECT_NEAR(phi, Rad(50), 1e-11);
  EXPECT_NEAR(lambda * 180 / Pi, 130 - 180 / 0.7071067811865475, 1e-9);
  // Longitudes do not wrap.
  ASSERT_EQ(GeoXY(object.get(), &x, &y, Rad(50), Rad(350)), 1);
  ASSERT_EQ(XYGeo(object.get(), x, y, &phi, &lambda), 1);
  EXPECT_GT(std::fabs(lambda - Rad(-10)), 0.1);
}

TEST_F(ProjectionTest, LambertTrueOnBothParallelsInEitherOrder) {
  GeodesyParams params = Texas();
  params.ScaleFactor = 0.9999;
  const Object object = Make(params);
  std::swap(params.NorthParallel, params.SouthParallel);
  const Object swapped = Make(params);
  for (const double parallel : {params.NorthParallel, params.SouthParallel}) {
    double x = 0;
    double y = 0;
    double xSwapped = 0;
    double ySwapped = 0;
    GeoXY(object.get(), &x, &y, parallel, Rad(-97));
    GeoXY(swapped.get(), &xSwapped, &ySwapped, parallel, Rad(-97));
    EXPECT_NEAR(Scale(object.get(), x, y), 0.9999, 2e-9);
    EXPECT_NEAR(x, xSwapped, 1e-5);
    EXPECT_NEAR(y, ySwapped, 1e-5);
  }
}

TEST_F(ProjectionTest, LambertGivesUpAfterTenPasses) {
  // An ellipsoid so flat that the latitude comes near by a third or so a pass.
  GeodesyParams params = Texas();
  params.InvFlattening = 2;
  const Object object = Make(params);
  double phi = 7;
  double lambda = 8;
  EXPECT_EQ(XYGeo(object.get(), 3000000, 254759, &phi, &lambda), 0);
  EXPECT_EQ(GetGeodesyError(), 11);
  EXPECT_EQ(Log(), Lines{"Log --- Error 11"});
  EXPECT_LT(std::fabs(phi), HalfPi) << "the last values stand";
  EXPECT_LT(lambda, 0);
}

}  // namespace
