// Undulations and lengths, through the exports.
#include "support.h"

namespace {

using namespace support;

class GeoidTest : public Scratch {
 protected:
  // The result, the code and the value of asking for the undulation.
  void ExpectUndulation(double latitude, double longitude, std::int32_t code, double expected) const {
    double value = -99;
    EXPECT_EQ(Undulation(object_.get(), Rad(latitude), Rad(longitude), &value), code == 0 ? 1 : 0);
    EXPECT_EQ(GetGeodesyError(), code);
    EXPECT_NEAR(value, expected, 1e-9);
  }

  Object object_ = Make(Utm31());
};

TEST_F(GeoidTest, TheConstantAppliesWithAndWithoutAGrid) {
  ExpectUndulation(0, 0, 0, 0);
  EXPECT_EQ(SetGeoid(object_.get(), nullptr, 1.5), 1);
  ExpectUndulation(-90, 180, 0, 1.5);
  EXPECT_EQ(SetGeoid(object_.get(), Write("grid", Grid{}.Bytes()).c_str(), 1.5), 1);
  ExpectUndulation(50.25, 10.5, 0, 121.5);
  ExpectUndulation(50.5, 10.5, 0, 221.5);
  ExpectUndulation(50.6, 10.5, 8, 1.5);
  EXPECT_EQ(Log(), Lines{}) << "a point outside is a warning, read at once";
}

TEST_F(GeoidTest, AFailedLoadLeavesNoGridAndTheNewConstant) {
  Grid two;
  two.nz = 2;
  const std::string good = Write("grid", Grid{}.Bytes());
  for (const auto& [path, first] : {std::pair{Path("nothing"), "Log --- Error 1"},
                                    {Write("short", "x"), "Log --- Error 3"},
                                    {Write("two", two.Bytes()), "Log --- Error 2"}}) {
    ASSERT_EQ(SetGeoid(object_.get(), good.c_str(), 1), 1);
    EXPECT_EQ(SetGeoid(object_.get(), path.c_str(), 2.0), 0);
    EXPECT_EQ(GetGeodesyError(), 9);
    EXPECT_EQ(Log(), (Lines{first, "Log --- Error 9"}));
    char text[8] = "x";
    double constant = 0;
    EXPECT_EQ(GetGeoid(object_.get(), text, sizeof text, &constant), 1);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(constant, 2.0);
    ExpectUndulation(50.25, 10.5, 0, 2.0);
  }
}

TEST_F(GeoidTest, RowsThatCannotBeReadGiveCodeThirteenAndTheConstant) {
  const std::string whole = Grid{}.Bytes();
  ASSERT_EQ(SetGeoid(object_.get(), Write("cut", whole.substr(0, whole.size() - 4)).c_str(), 3), 1);
  ExpectUndulation(50.4, 10.1, 13, 3);
  ExpectUndulation(50.1, 10.0, 0, 3 + 100 * 0.16 * (3 - 0.8));
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(GeoidTest, PathsAreCopiedUpToTheWholeBuffer) {
  const std::string path = Write("grid", Grid{}.Bytes());
  ASSERT_EQ(SetGeoid(object_.get(), path.c_str(), 0), 1);
  std::string text(path.size() + 4, '#');
  EXPECT_EQ(GetGeoid(object_.get(), text.data(), static_cast<std::int32_t>(path.size()), nullptr), 1);
  EXPECT_EQ(text, path + "####") << "no terminator, and nothing beyond the size";
  EXPECT_EQ(GetGeoid(object_.get(), text.data(), static_cast<std::int32_t>(path.size() + 3), nullptr), 1);
  EXPECT_EQ(text, path + std::string(3, '\0') + "#") << "filled up with zeros";
}

}  // namespace
