#include "grid/interp_file.h"

#include "support.h"

namespace latigo {
namespace {

using support::Grid;
using support::Rad;

class InterpFileTest : public support::Scratch {};

// The first value at a point, or the negative code.
double Value(InterpFile& file, double latitude, double longitude) {
  double value = 77;
  std::int32_t count = 77;
  const std::int32_t code = file.Lookup(latitude, longitude, &count, {&value, 1}).code();
  EXPECT_EQ(count, code == 0 ? file.Depth() : 0);
  EXPECT_TRUE(code == 0 || value == 77) << "a failure leaves the values alone";
  return code == 0 ? value : -code;
}

TEST_F(InterpFileTest, ResultsDoNotDependOnEarlierLookups) {
  Grid grid;
  grid.nz = 2;
  grid.value = [](int row, int col, int i) { return static_cast<float>(7 * row * row - 5 * col + 100 * i); };
  const std::string path = Write("grid", grid.Bytes());
  InterpFile roaming(path.c_str(), false);
  for (int step = 0; step < 200; ++step) {
    const double latitude = Rad(49.9 + (step * 37 % 100) * 0.007);
    const double longitude = Rad(9.9 + (step * 61 % 100) * 0.007);
    InterpFile fresh(path.c_str(), false);
    double both[] = {0, 100, 77};
    roaming.Lookup(latitude, longitude, nullptr, both).code();
    EXPECT_NEAR(both[1] - both[0], 100, 1e-11);
    EXPECT_EQ(both[2], 77);
    EXPECT_EQ(Value(roaming, latitude, longitude), Value(fresh, latitude, longitude));
  }
}

TEST_F(InterpFileTest, TheMagicIgnoresCaseAndOpeningDropsThePreviousFile) {
  Grid grid;
  grid.magic = "TideWrak";
  InterpFile file(Write("grid", grid.Bytes()).c_str(), false);
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

TEST_F(InterpFileTest, ReverseMirrorsOnlyTheLimitsOfTheLattice) {
  InterpFile file(Write("grid", Grid{}.Bytes()).c_str(), true);
  EXPECT_NEAR(Value(file, Rad(50), Rad(-15.5)), 0, 1e-10) << "column 0 lies at the new western limit";
  EXPECT_NEAR(Value(file, Rad(50), Rad(-15.25)), 10, 1e-10);
  EXPECT_EQ(Value(file, Rad(50), Rad(10.25)), -4);
}

}  // namespace
}  // namespace latigo
