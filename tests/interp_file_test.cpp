#include "grid/interp_file.h"

#include "support.h"

namespace latigo {
namespace {

using support::Grid;
using support::Infinity;
using support::Lines;
using support::NaN;
using support::Rad;

class InterpFileTest : public support::Scratch {
 protected:
  // The code of opening a file of these bytes, 0 if it opens.
  std::int32_t OpenCode(const std::string& bytes) const {
    try {
      const InterpFile file(Write("grid", bytes).c_str(), false);
      return 0;
    } catch (errcode& failure) { return failure.code(); }
  }
};

// The first value at a point, or minus the code.
double Value(InterpFile& file, double latitude, double longitude) {
  double value = 77;
  std::int32_t count = 77;
  const std::int32_t code = file.Lookup(latitude, longitude, &count, {&value, 1}).code();
  EXPECT_EQ(count, code == 0 ? file.Depth() : 0);
  EXPECT_TRUE(code == 0 || value == 77) << "a failure leaves the values alone";
  return code == 0 ? value : -code;
}

TEST_F(InterpFileTest, HeadersAreRefusedWithTheCodeOfTheirFault) {
  struct Case {
    const char* what;
    std::function<void(Grid&)> spoil;
    std::int32_t code;
  };
  // clang-format off
  const Case cases[] = {
      {"good", [](Grid&) {}, 0},
      {"from the south pole at 180 west", [](Grid& g) { g.south = -90, g.west = -180; }, 0},
      {"beyond the south pole", [](Grid& g) { g.south = std::nextafter(-90.0F, -100.0F); }, 2},
      {"beyond the north pole", [](Grid& g) { g.south = std::nextafter(90.0F, 100.0F); }, 2},
      {"beyond 180 west", [](Grid& g) { g.west = std::nextafter(-180.0F, -200.0F); }, 2},
      {"beyond 180 east", [](Grid& g) { g.west = std::nextafter(180.0F, 200.0F); }, 2},
      {"no latitude", [](Grid& g) { g.south = static_cast<float>(NaN); }, 2},
      {"no columns", [](Grid& g) { g.nc = 0; }, 2},
      {"no rows", [](Grid& g) { g.nr = 0; }, 2},
      {"negative rows", [](Grid& g) { g.nr = -1; }, 2},
      {"no values", [](Grid& g) { g.nz = 0; }, 2},
      {"a step below half a second", [](Grid& g) { g.lonstep = 0.00013F; }, 2},
      {"a negative step", [](Grid& g) { g.latstep = -0.25F; }, 2},
      {"an endless step", [](Grid& g) { g.latstep = static_cast<float>(Infinity); }, 2},
      {"a record beyond 32 bits", [](Grid& g) { g.nc = g.nz = 40000; }, 2},
  };
  // clang-format on
  for (const auto& [what, spoil, code] : cases) {
    Grid grid;
    spoil(grid);
    EXPECT_EQ(OpenCode(grid.Header()), code) << what;
    EXPECT_EQ(Log(), code == 0 ? Lines{} : Lines{"Log --- Error 2"}) << what;
  }
  EXPECT_EQ(OpenCode(Grid{}.Header().substr(0, 95)), 3);
  EXPECT_EQ(OpenCode(""), 3);
  EXPECT_THROW(InterpFile(Path("nothing").c_str(), false), errcode);
  EXPECT_EQ(Log(), (Lines{"Log --- Error 3", "Log --- Error 3", "Log --- Error 1"}));
}

TEST_F(InterpFileTest, NodesGiveTheirOwnValuesAlsoOnTheLimits) {
  InterpFile file(Write("grid", Grid{}.Bytes()).c_str(), false);
  for (int row = 0; row <= 2; ++row) {
    for (int col = 0; col <= 2; ++col) {
      // 50, 10 and 0.25 degrees are exact in single precision and whole in arc seconds.
      EXPECT_NEAR(Value(file, Rad(50) + row * Rad(0.25), Rad(10) + col * Rad(0.25)), 100 * row + 10 * col, 1e-11);
    }
  }
  EXPECT_EQ(Value(file, Rad(50), Rad(10)), 0);
  EXPECT_EQ(Value(file, Rad(50) + Rad(0.25) * 2, Rad(10) + Rad(0.25) * 22), 420) << "the corner of both limits";
}

TEST_F(InterpFileTest, TheBlendHasTheCubicWeights) {
  // S(1/4) = 5/32, S(1/2) = 1/2.
  InterpFile file(Write("grid", Grid{}.Bytes()).c_str(), false);
  EXPECT_NEAR(Value(file, Rad(50), Rad(10.0625)), 10 * 5.0 / 32, 1e-11);
  EXPECT_NEAR(Value(file, Rad(50.0625), Rad(10)), 100 * 5.0 / 32, 1e-11);
  EXPECT_NEAR(Value(file, Rad(50.375), Rad(10.3125)), 150 + 10 + 10 * 5.0 / 32, 1e-11);
  // v runs along longitude and u along latitude; corners go round from the south-west.
  const double corners[] = {1, 2, 4, 8};
  EXPECT_EQ(file.Interpolate(corners, 1, 0), 2);
  EXPECT_EQ(file.Interpolate(corners, 1, 1), 4);
  EXPECT_EQ(file.Interpolate(corners, 0, 1), 8);
  EXPECT_NEAR(file.Interpolate(corners, 0.25, 0), 1 + 0.15625, 1e-15);
}

TEST_F(InterpFileTest, ResultsDoNotDependOnWhatWasAskedBefore) {
  Grid grid;
  grid.nz = 2;
  grid.value = [](int row, int col, int i) { return static_cast<float>(7 * row * row - 5 * col + 100 * i); };
  const std::string path = Write("grid", grid.Bytes());
  InterpFile roaming(path.c_str(), false);
  for (int step = 0; step < 200; ++step) {
    const double latitude = Rad(49.9 + (step * 37 % 100) * 0.007);
    const double longitude = Rad(9.9 + (step * 61 % 100) * 0.007);
    InterpFile fresh(path.c_str(), false);
    double both[2] = {0, 100};
    roaming.Lookup(latitude, longitude, nullptr, both).code();
    EXPECT_NEAR(both[1] - both[0], 100, 1e-11);
    EXPECT_EQ(Value(roaming, latitude, longitude), Value(fresh, latitude, longitude));
  }
}

TEST_F(InterpFileTest, PointsOutsideGiveCodeFour) {
  InterpFile file(Write("grid", Grid{}.Bytes()).c_str(), false);
  const double past = 1e-12;
  for (const auto& [latitude, longitude] : {std::pair{Rad(50) - past, Rad(10.1)},
                                            {Rad(50.5) + past, Rad(10.1)},
                                            {Rad(50.1), Rad(10) - past},
                                            {Rad(50.1), Rad(15.5) + past},
                                            {NaN, Rad(10.1)},
                                            {Rad(50.1), NaN},
                                            {Infinity, -Infinity}}) {
    EXPECT_EQ(Value(file, latitude, longitude), -4);
  }
}

TEST_F(InterpFileTest, LatticesAcrossTheMeridianOf180TakeLongitudesFromBothSides) {
  Grid grid;
  grid.west = 170;
  grid.lonstep = 10;
  InterpFile across(Write("across", grid.Bytes()).c_str(), false);
  EXPECT_NEAR(Value(across, Rad(50), Rad(-175)), 15, 1e-9);
  EXPECT_NEAR(Value(across, Rad(50), Rad(175)), 5, 1e-9);
  grid.lonstep = 0.25F;
  InterpFile below(Write("below", grid.Bytes()).c_str(), false);
  EXPECT_EQ(Value(below, Rad(50), Rad(-175)), -4);
}

TEST_F(InterpFileTest, LatticesOfOneRowOrOneColumn) {
  for (const auto& [nr, nc] : {std::pair{1, 23}, {3, 1}, {1, 1}}) {
    Grid grid;
    grid.nr = nr;
    grid.nc = nc;
    grid.nz = 23;
    InterpFile file(Write("grid", grid.Bytes()).c_str(), false);
    EXPECT_NEAR(Value(file, Rad(50) + (nr - 1) * Rad(0.25), Rad(10) + (nc - 1) * Rad(0.25)),
                100 * (nr - 1) + 10 * (nc - 1), 1e-11);
    EXPECT_EQ(Value(file, Rad(50) + nr * Rad(0.25), Rad(10)), -4);
  }
}

TEST_F(InterpFileTest, RowsThatCannotBeReadWholeGiveCodeThirteenAndNothingOfThemStays) {
  const std::string whole = Grid{}.Bytes();
  InterpFile file(Write("grid", whole.substr(0, whole.size() - 1)).c_str(), false);
  for (int i = 0; i < 2; ++i) {
    EXPECT_NEAR(Value(file, Rad(50), Rad(10.25)), 10, 1e-11) << "the rows before the cut are there";
    EXPECT_EQ(Value(file, Rad(50.3), Rad(10.25)), -13);
    EXPECT_EQ(Value(file, Rad(50.3), Rad(10.25)), -13);
  }
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(InterpFileTest, StepsAreWholeArcSecondsAndTheMagicIgnoresCapitals) {
  Grid grid;
  grid.latstep = grid.lonstep = 0.016666668F;
  grid.magic = "TideWrak";
  InterpFile file(Write("grid", grid.Bytes()).c_str(), false);
  EXPECT_EQ(Value(file, Rad(50) + 120 * support::Second, Rad(10)), 200) << "60 seconds, exactly";
  EXPECT_EQ(file.HeaderValueA(), 1.5);
  EXPECT_EQ(file.HeaderValueB(), -2.5);
  EXPECT_EQ(file.Description(), "A grid of corrections for test");
  grid.magic = "NADGRD";
  EXPECT_EQ(file.Open(Write("other", grid.Bytes()).c_str(), false).code(), 0);
  EXPECT_EQ(file.HeaderValueA(), 0);
  EXPECT_EQ(file.Description().size(), 56);
  EXPECT_EQ(file.Path(), Path("other"));
  grid.value = [](int, int, int) { return 7.0F; };
  EXPECT_EQ(Value(file, Rad(50), Rad(10)), 0);
  EXPECT_EQ(file.Open(Write("third", grid.Bytes()).c_str(), false).code(), 0);
  EXPECT_EQ(Value(file, Rad(50), Rad(10)), 7) << "nothing of the file before stays";
}

TEST_F(InterpFileTest, ReversedLatticesMirrorTheirLimitsOnly) {
  InterpFile file(Write("grid", Grid{}.Bytes()).c_str(), true);
  EXPECT_NEAR(Value(file, Rad(50), Rad(-15.5)), 0, 1e-10) << "column 0 lies at the new western limit";
  EXPECT_NEAR(Value(file, Rad(50), Rad(-15.25)), 10, 1e-10);
  EXPECT_EQ(Value(file, Rad(50), Rad(10.25)), -4);
}

}  // namespace
}  // namespace latigo
