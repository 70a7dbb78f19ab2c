// The local grid behind the projection, through the exports.
#include "support.h"

namespace {

using namespace support;

// On the sphere x is 6378388 times the longitude and y 0 on the equator, so grid points are easy to hit.
class AdjustmentTest : public Scratch {
 protected:
  Object object_ = Make(WGS84(SMercKind));
  static constexpr double Radius = 6378388.0;
  static constexpr Adjustment Turned = {1, 1000, 2000, Pi / 6, 2, 10, 20};
};

TEST_F(AdjustmentTest, ANewObjectHasNone) {
  Adjustment found = Turned;
  EXPECT_EQ(GetAdjustment(object_.get(), &found), 1);
  EXPECT_TRUE(Same(found, Adjustment{0, 0, 0, 0, 1, 0, 0}));
}

TEST_F(AdjustmentTest, TheSimilarityTurnsScalesShiftsAndMirrors) {
  // The point whose projection coordinates are 1500, 2500.
  const double longitude = 1500 / Radius;
  const double latitude = 2 * std::atan(std::exp(2500 / Radius)) - HalfPi;
  const double X = 1376.0254037844386;
  const double Y = 386.02540378443877;
  for (const auto& [flags, signX, signY] :
       {std::tuple{0u, 1, 1}, {LATIGO_REVERSE_X, -1, 1}, {LATIGO_REVERSE_Y, 1, -1}, {0x30000u, -1, -1}}) {
    Adjustment adjustment = Turned;
    adjustment.AdjustType |= flags;
    ASSERT_EQ(SetAdjustment(object_.get(), &adjustment), 1);
    const auto [x, y, code] = Forward(object_, latitude, longitude);
    EXPECT_NEAR(x, signX * X, 4e-9);
    EXPECT_NEAR(y, signY * Y, 4e-9);
    const LatLon back = Inverse(object_, x, y);
    EXPECT_NEAR(back.latitude, latitude, 1e-15);
    EXPECT_NEAR(back.longitude, longitude, 1e-15);
    Adjustment found{};
    GetAdjustment(object_.get(), &found);
    EXPECT_TRUE(Same(found, adjustment));
  }
}

TEST_F(AdjustmentTest, PositiveTurnsAreAnticlockwiseAndNegativeScalesTurnHalfWay) {
  const Adjustment quarter = {1, 0, 0, HalfPi, 1, 0, 0};
  SetAdjustment(object_.get(), &quarter);
  EXPECT_NEAR(Forward(object_, 0, 1).y, -Radius, 1e-8) << "the x axis goes to negative Y";
  const Adjustment negative = {1, 0, 0, 0, -1, 0, 0};
  SetAdjustment(object_.get(), &negative);
  EXPECT_EQ(Forward(object_, 0, 1).x, -Radius);
}

TEST_F(AdjustmentTest, OtherTypesAreStoredAndDoNothing) {
  for (const std::uint32_t type : {0u, 0x10000u, 17u, 65535u, 0x30011u}) {
    Adjustment adjustment = Turned;
    adjustment.AdjustType = type;
    ASSERT_EQ(SetAdjustment(object_.get(), &adjustment), 1);
    EXPECT_EQ(Forward(object_, 0, 1).x, Radius);
    EXPECT_EQ(Inverse(object_, Radius, 0).longitude, 1);
    Adjustment found{};
    GetAdjustment(object_.get(), &found);
    EXPECT_TRUE(Same(found, adjustment));
  }
}

TEST_F(AdjustmentTest, FixedGridsAreKnownByTheirTypeAloneAndOnlyChainsReadTheUnit) {
  constexpr double C = 20.1167651216;
  for (const auto& [type, unit, x, y, toX, toY] :
       {std::tuple{0x30002u, 1.0, 678360.656, 6140437.158, -118722.22369, 106064.77821},
        {2u, 0.9, 678360.656, 6140437.158, -118722.22369, 106064.77821},
        {3u, 1.0, 600000.0, 6100000.0, -197902.01576041913, 67164.37349466156},
        {0x10004u, C, 20000.0, 40000.0, 5317.180440564191, 7206.568234031237},
        {4u, 1.0, 20000 * C, 40000 * C, 5317.180440564191 * C, 7206.568234031237 * C}}) {
    GeodesyParams params = WGS84(MercatorKind);
    params.Unit = unit;
    const Object object = Make(params);
    const LatLon position = Inverse(object, x, y);
    const Adjustment adjustment = {type, 1, 2, 3, 4, 5, 6};
    SetAdjustment(object.get(), &adjustment);
    const XY local = Forward(object, position.latitude, position.longitude);
    EXPECT_NEAR(local.x, toX, 2e-3) << type;
    EXPECT_NEAR(local.y, toY, 2e-3) << type;
    EXPECT_NEAR(Inverse(object, local.x, local.y).latitude, position.latitude, 1e-6) << type;
  }
}

}  // namespace
