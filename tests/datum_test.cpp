// Datum grids, and what ends what, through the exports. The digits of the seven values stand in claims/datum.txt.
#include "support.h"

namespace {

using namespace support;

void ExpectPosition(const Position& found, const Position& expected, double angle = 1e-14, double height = 2e-8) {
  EXPECT_NEAR(found.latitude, expected.latitude, angle);
  EXPECT_NEAR(found.longitude, expected.longitude, angle);
  EXPECT_NEAR(found.h, expected.h, height);
}

// Objects on the Clarke ellipsoid of 1866, at a start position of 40.107 and -68.755 degrees.
class DatumTest : public Scratch {
 protected:
  Position ToObject(Position p = {}) const {
    EXPECT_EQ(WGS84Conv(object_.get(), &p.latitude, &p.longitude, &p.h), 1);
    return p;
  }
  Position ToWgs84(Position p = {}) const {
    EXPECT_EQ(InvWGS84Conv(object_.get(), &p.latitude, &p.longitude, &p.h), 1);
    return p;
  }
  Position FromOther(double a, double f, Position p = {}) const {
    EXPECT_EQ(EllConv(object_.get(), &p.latitude, &p.longitude, &p.h, a, f), 1);
    return p;
  }
  // A grid of the same values at all nodes, around the start position.
  std::string WriteGrid(const char* name, std::vector<float> values, float west = -69) const {
    Grid grid;
    grid.west = west;
    grid.south = 40;
    grid.nz = static_cast<std::int32_t>(values.size());
    grid.value = [values](int, int, int i) { return values[static_cast<std::size_t>(i)]; };
    return Write(name, grid.Bytes());
  }
  void Set(const EllDiff& diff) const { EXPECT_EQ(SetEllDiff(object_.get(), &diff), 1); }
  std::int32_t SetGrid(const std::string& path) const {
    SetEllModel(object_.get(), path.c_str());
    return GetGeodesyError();
  }
  EllDiff Current() const {
    EllDiff diff{};
    EXPECT_EQ(GetEllDiff(object_.get(), &diff), 1);
    return diff;
  }

  static constexpr EllDiff None = {0, 0, 0, 1, 0, 0, 0};
  static constexpr EllDiff Seven = {-8, 160, 176, 1.000005, 1 * Second, -2 * Second, 3 * Second};
  static constexpr Position CarriedAcross = {0.7000368309881134, -1.2, 129.14758708979934};
  Object object_ = Open("Clarke");
};

TEST_F(DatumTest, GridsHoldShiftsInSecondsOrTranslations) {
  ASSERT_EQ(SetGrid(WriteGrid("two", {1.5F, -2.5F})), 0);
  ExpectPosition(ToWgs84(), {0.7 + 1.5 * Second, -1.2 - 2.5 * Second, 100}, 1e-11, 1e-8);
  ExpectPosition(ToObject(), {0.7 - 1.5 * Second, -1.2 + 2.5 * Second, 100}, 1e-9, 0.01);
  Set({10, 20, 30, 1, 0, 0, 0});
  const Position there = ToObject();
  const Position back = ToWgs84();
  for (const auto& values : {std::vector<float>{10, 20, 30}, {10, 20, 30, 99, 98}}) {
    ASSERT_EQ(SetGrid(WriteGrid("grid", values)), 0);
    ExpectPosition(ToObject(), there);
    ExpectPosition(ToWgs84(), back);
  }
}

TEST_F(DatumTest, PointsOutsideTheGridOrInRowsThatCannotBeReadAreCarriedAcross) {
  ASSERT_EQ(SetGrid(WriteGrid("far", {1, 1}, 100)), 0);
  ExpectPosition(ToObject(), CarriedAcross);
  const std::string near = WriteGrid("near", {1, 1});
  std::filesystem::resize_file(near, 100);
  ASSERT_EQ(SetGrid(near), 0);
  ExpectPosition(ToObject(), CarriedAcross);
  EXPECT_EQ(GetGeodesyError(), 0);
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(DatumTest, AGridAndTheSevenValuesEndEachOther) {
  const std::string grid = WriteGrid("grid", {1, 1});
  Set(Seven);
  ASSERT_EQ(SetGrid(grid), 0);
  EXPECT_TRUE(Same(Current(), EllDiff{0, 0, 0, -1.0, 0, 0, 0}));
  ExpectPosition(FromOther(6378388, 1 / 297.0), {}, 0, 0);
  EXPECT_EQ(SetEllModel(object_.get(), nullptr), 1);
  ExpectPosition(ToObject(), {}, 0, 0);
  EXPECT_TRUE(Same(Current(), None)) << "the seven values do not come back";
  ASSERT_EQ(SetGrid(grid), 0);
  Set(Seven);
  EXPECT_TRUE(Same(Current(), Seven));
  char text[8] = "x";
  EXPECT_EQ(GetEllModel(object_.get(), text, sizeof text), 1);
  EXPECT_STREQ(text, "");
}

TEST_F(DatumTest, ARefusedGridLeavesTheShiftActiveWithIdentityValues) {
  for (const auto& [path, code] :
       {std::pair{Path("nothing"), 1}, {WriteGrid("one", {1}), 2}, {Write("short", "short"), 3}}) {
    for (const EllDiff& before : {None, Seven}) {
      Set(before);
      EXPECT_EQ(SetGrid(path), code);
      EXPECT_EQ(Log(), Lines{"Log --- Error " + std::to_string(code)});
      EXPECT_TRUE(Same(Current(), None));
      ExpectPosition(ToObject(), Same(before, None) ? Position{} : CarriedAcross);
    }
  }
}

TEST_F(DatumTest, WithoutAHeightConversionsRunAtHeightZero) {
  Set(Seven);
  Position p;
  EXPECT_EQ(WGS84Conv(object_.get(), &p.latitude, &p.longitude, nullptr), 1);
  ExpectPosition({p.latitude, p.longitude, 0},
                 {ToObject({0.7, -1.2, 0}).latitude, ToObject({0.7, -1.2, 0}).longitude, 0}, 0);
}

TEST_F(DatumTest, PathsAreCopiedUpToOneByteLessThanTheBuffer) {
  const std::string path = WriteGrid("grid", {1, 1});
  ASSERT_EQ(SetGrid(path), 0);
  std::string text(path.size() + 4, '#');
  EXPECT_EQ(GetEllModel(object_.get(), text.data(), static_cast<std::int32_t>(path.size())), 1);
  EXPECT_EQ(text, path.substr(0, path.size() - 1) + "#####") << "no terminator, and the last byte is not touched";
  EXPECT_EQ(GetEllModel(object_.get(), text.data(), static_cast<std::int32_t>(path.size() + 4)), 1);
  EXPECT_EQ(text, path + std::string(3, '\0') + "#");
}

}  // namespace
