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
  for (const std::uint32_t type : {0u, 0x10000u, 2u, 3u, 4u, 16u, 17u, 65535u, 0x30002u}) {
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

TEST_F(AdjustmentTest, AScaleOfZeroIsRefusedAndNothingHasChanged) {
  SetAdjustment(object_.get(), &Turned);
  Adjustment zero = {0x30001, 1, 2, 3, 0, 4, 5};
  EXPECT_EQ(SetAdjustment(object_.get(), &zero), 0);
  EXPECT_EQ(GetGeodesyError(), 7);
  Adjustment found{};
  GetAdjustment(object_.get(), &found);
  EXPECT_TRUE(Same(found, Turned));
  EXPECT_EQ(Name(object_, 7), "easting");
  EXPECT_EQ(Log(), Lines{}) << "the code is read";
}

TEST_F(AdjustmentTest, ScaleAndFailedConversionsGoRoundTheLocalGrid) {
  const Object utm = Make(Utm31());
  ASSERT_EQ(SetAdjustment(utm.get(), &Turned), 1);
  EXPECT_NEAR(Scale(utm.get(), 637294.3658945, 5762926.8129141), 0.9998314066, 1e-10);
  const XY failed = Forward(utm, HalfPi, 0);
  EXPECT_TRUE(failed.x == Untouched && failed.y == Untouched);
}

}  // namespace
