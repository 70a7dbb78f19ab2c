// Datum shifts, through the exports.
#include "support.h"

namespace {

using namespace support;

struct Position {
  double latitude = 0.7;
  double longitude = -1.2;
  double h = 100;
};

void ExpectPosition(const Position& found, const Position& expected, double angle = 1e-14, double height = 2e-8) {
  EXPECT_NEAR(found.latitude, expected.latitude, angle);
  EXPECT_NEAR(found.longitude, expected.longitude, angle);
  EXPECT_NEAR(found.h, expected.h, height);
}

class DatumTest : public Scratch {
 protected:
  Position ToObject(Position p) const {
    EXPECT_EQ(WGS84Conv(object_.get(), &p.latitude, &p.longitude, &p.h), 1);
    EXPECT_EQ(GetGeodesyError(), 0);
    return p;
  }
  Position ToWgs84(Position p) const {
    EXPECT_EQ(InvWGS84Conv(object_.get(), &p.latitude, &p.longitude, &p.h), 1);
    EXPECT_EQ(GetGeodesyError(), 0);
    return p;
  }
  std::string WriteGrid(const char* name, std::vector<float> values, float west = -69, float south = 40) const {
    Grid grid;
    grid.west = west;
    grid.south = south;
    grid.nz = static_cast<std::int32_t>(values.size());
    grid.value = [values](int, int, int i) { return values[static_cast<std::size_t>(i)]; };
    return Write(name, grid.Bytes());
  }
  EllDiff Current() const {
    EllDiff diff{};
    EXPECT_EQ(GetEllDiff(object_.get(), &diff), 1);
    return diff;
  }
  bool Shifts() const { return ToObject({}).latitude != 0.7; }

  static GeodesyParams Clarke1866() {
    GeodesyParams params = Texas();
    params.Unit = 1;
    return params;
  }

  // The start position of the tests lies in the middle of this grid: 0.7 and -1.2 are 40.107 and -68.755 degrees.
  const EllDiff seven_ = {-8, 160, 176, 1.000005, 1 * Second, -2 * Second, 3 * Second};
  const Position unshifted_ = {0.7000368309881134, -1.2, 129.14758708979934};
  Object object_ = Make(Clarke1866());
};

TEST_F(DatumTest, SevenValuesRotateTheCoordinateFrame) {
  ASSERT_EQ(SetEllDiff(object_.get(), &seven_), 1);
  const Position there = ToObject({});
  ExpectPosition(there, {0.7000743735463736, -1.1999951716879336, 158.13603119924664});
  // The way back turns the signs, and misses the start by a few millimetres.
  ExpectPosition(ToWgs84(there), {0.699999999885147, -1.200000000916291, 100.00015627592802});
}

TEST_F(DatumTest, WithoutAShiftNothingChangesThoughTheEllipsoidsDiffer) {
  EllDiff scaleOnly = {0, 0, 0, 1.000005, 0, 0, 0};
  for (int i = 0; i < 2; ++i) {
    ExpectPosition(ToObject({}), {}, 0, 0);
    ExpectPosition(ToWgs84({}), {}, 0, 0);
    ASSERT_EQ(SetEllDiff(object_.get(), &scaleOnly), 1);
    EXPECT_EQ(Current().DeltaScale, 1.000005);
  }
}

TEST_F(DatumTest, EachTranslationAndRotationAloneMakesAShift) {
  for (const int field : {0, 1, 2, 4, 5, 6}) {
    double values[7] = {0, 0, 0, 1, 0, 0, 0};
    EllDiff diff;
    std::memcpy(&diff, values, sizeof diff);
    SetEllDiff(object_.get(), &diff);
    EXPECT_FALSE(Shifts());
    values[field] = 1e-9;
    std::memcpy(&diff, values, sizeof diff);
    SetEllDiff(object_.get(), &diff);
    EXPECT_TRUE(Shifts());
  }
}

TEST_F(DatumTest, GridsOfTwoValuesAreShiftsInArcSeconds) {
  ASSERT_EQ(SetEllModel(object_.get(), WriteGrid("two", {1.5F, -2.5F}).c_str()), 1);
  ExpectPosition(ToWgs84({}), {0.7 + 1.5 * Second, -1.2 - 2.5 * Second, 100}, 1e-11, 1e-8);
  ExpectPosition(ToObject({}), {0.7 - 1.5 * Second, -1.2 + 2.5 * Second, 100}, 1e-9, 0.01);
}

TEST_F(DatumTest, GridsOfThreeValuesOrMoreAreTranslations) {
  const EllDiff translation = {10, 20, 30, 1, 0, 0, 0};
  ASSERT_EQ(SetEllDiff(object_.get(), &translation), 1);
  const Position there = ToObject({});
  const Position back = ToWgs84({});
  for (const auto& values : {std::vector<float>{10, 20, 30}, {10, 20, 30, 99, 98}}) {
    ASSERT_EQ(SetEllModel(object_.get(), WriteGrid("grid", values).c_str()), 1);
    ExpectPosition(ToObject({}), there);
    ExpectPosition(ToWgs84({}), back);
  }
}

TEST_F(DatumTest, PointsOutsideTheGridOrInRowsThatCannotBeReadAreCarriedAcross) {
  const std::string far = WriteGrid("far", {1, 1}, 100, 0);
  ASSERT_EQ(SetEllModel(object_.get(), far.c_str()), 1);
  ExpectPosition(ToObject({}), unshifted_);
  const std::string near = WriteGrid("near", {1, 1});
  std::filesystem::resize_file(near, 100);
  ASSERT_EQ(SetEllModel(object_.get(), near.c_str()), 1);
  ExpectPosition(ToObject({}), unshifted_);
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(DatumTest, AGridAndTheSevenValuesEndEachOther) {
  const std::string grid = WriteGrid("grid", {1, 1});
  SetEllDiff(object_.get(), &seven_);
  ASSERT_EQ(SetEllModel(object_.get(), grid.c_str()), 1);
  EXPECT_EQ(Current().DeltaScale, -1.0);
  EXPECT_EQ(Current().DeltaX, 0);
  char text[200] = "";
  EXPECT_EQ(GetEllModel(object_.get(), text, sizeof text), 1);
  EXPECT_EQ(text, grid);
  Position p;
  EXPECT_EQ(EllConv(object_.get(), &p.latitude, &p.longitude, &p.h, 6378388, 1 / 297.0), 1);
  ExpectPosition(p, {}, 0, 0);

  EXPECT_EQ(SetEllModel(object_.get(), nullptr), 1);
  EXPECT_FALSE(Shifts());
  EXPECT_EQ(Current().DeltaScale, 1) << "the seven values do not come back";
  EXPECT_EQ(Current().DeltaX, 0);
  SetEllModel(object_.get(), grid.c_str());
  SetEllDiff(object_.get(), &seven_);
  EXPECT_EQ(Current().DeltaX, -8);
  EXPECT_EQ(GetEllModel(object_.get(), text, sizeof text), 1);
  EXPECT_STREQ(text, "");
}

TEST_F(DatumTest, ARefusedGridLeavesTheShiftActiveWithIdentityValues) {
  struct Case {
    std::string path;
    std::int32_t code;
  };
  for (const auto& [path, code] :
       {Case{Path("nothing"), 1}, Case{WriteGrid("one", {1}), 2}, Case{Write("short", "short"), 3}}) {
    EllDiff none = {0, 0, 0, 1, 0, 0, 0};
    for (const EllDiff& before : {none, seven_}) {
      SetEllDiff(object_.get(), &before);
      EXPECT_EQ(SetEllModel(object_.get(), path.c_str()), 0);
      EXPECT_EQ(GetGeodesyError(), code);
      EXPECT_EQ(Log(), Lines{"Log --- Error " + std::to_string(code)});
      EXPECT_EQ(Current().DeltaX, 0);
      EXPECT_EQ(Current().DeltaScale, 1);
      ExpectPosition(ToObject({}), before.DeltaX == 0 ? Position{} : unshifted_);
    }
  }
}

TEST_F(DatumTest, OtherEllipsoidsAreReachedByTheSevenValues) {
  SetEllDiff(object_.get(), &seven_);
  const double wgs84F = 1 / 298.257223563;
  Position p;
  EXPECT_EQ(EllConv(object_.get(), &p.latitude, &p.longitude, &p.h, 6378137, wgs84F), 1);
  ExpectPosition(p, ToObject({}));
  EXPECT_EQ(InvEllConv(object_.get(), &p.latitude, &p.longitude, &p.h, 6378137, wgs84F), 1);
  ExpectPosition(p, ToWgs84(ToObject({})));

  p = {};
  EXPECT_EQ(EllConv(object_.get(), &p.latitude, &p.longitude, &p.h, 6378206.4, 1 / 294.9786982), 1);
  EXPECT_EQ(InvEllConv(object_.get(), &p.latitude, &p.longitude, &p.h, 6378206.4, 1 / 294.9786982), 1);
  ExpectPosition(p, {}, 0, 0);
}

TEST_F(DatumTest, WithoutAHeightConversionsRunAtHeightZero) {
  SetEllDiff(object_.get(), &seven_);
  Position p;
  EXPECT_EQ(WGS84Conv(object_.get(), &p.latitude, &p.longitude, nullptr), 1);
  EXPECT_EQ(p.h, 100);
  const Position ground = ToObject({0.7, -1.2, 0});
  EXPECT_EQ(p.latitude, ground.latitude);
  EXPECT_EQ(p.longitude, ground.longitude);
}

TEST_F(DatumTest, PathsAreCopiedUpToOneByteLessThanTheBuffer) {
  const std::string path = WriteGrid("grid", {1, 1});
  ASSERT_EQ(SetEllModel(object_.get(), path.c_str()), 1);
  std::string text(path.size() + 4, '#');
  EXPECT_EQ(GetEllModel(object_.get(), text.data(), static_cast<std::int32_t>(path.size())), 1);
  EXPECT_EQ(text, path.substr(0, path.size() - 1) + "#####") << "no terminator, and the last byte is not touched";
  EXPECT_EQ(GetEllModel(object_.get(), text.data(), static_cast<std::int32_t>(path.size() + 4)), 1);
  EXPECT_EQ(text, path + std::string(3, '\0') + "#");
}

TEST_F(DatumTest, CartesianExportsStayOnTheObjectsOwnEllipsoid) {
  // "A Guide to Coordinate Systems in Great Britain", the water tower at Caister on Airy's ellipsoid.
  GeodesyParams params = Utm31();
  params.SemiMajorAxis = 6377563.396;
  params.InvFlattening = 299.3249646;
  const Object airy = Make(params);
  SetEllDiff(airy.get(), &seven_);
  double x = 0;
  double y = 0;
  double z = 0;
  EXPECT_EQ(
      GeoECEF(airy.get(), &x, &y, &z, Rad(52 + 39 / 60.0 + 27.2531 / 3600), Rad(1 + 43 / 60.0 + 4.5177 / 3600), 24.7),
      1);
  EXPECT_NEAR(x, 3874938.849, 2e-3);
  EXPECT_NEAR(y, 116218.624, 2e-3);
  EXPECT_NEAR(z, 5047168.208, 2e-3);
  Position p;
  EXPECT_EQ(ECEFGeo(airy.get(), 3874938.849, 116218.624, 5047168.208, &p.latitude, &p.longitude, &p.h), 1);
  ExpectPosition(p, {Rad(52 + 39 / 60.0 + 27.2531 / 3600), Rad(1 + 43 / 60.0 + 4.5177 / 3600), 24.7}, 5e-10, 2e-3);
}

}  // namespace
