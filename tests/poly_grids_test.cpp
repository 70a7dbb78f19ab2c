// The fixed local grids. The far-off points are worked out from the printed tables in exact fractions; they lie so far
// out that a change in the last digit of any coefficient shows.
#include "adjust/poly_grids.h"

#include "support.h"

namespace latigo {
namespace {

struct Case {
  std::uint32_t type;
  bool forward;
  double x, y, toX, toY;
};

constexpr double Chain = 20.1167651216;

void ConvertPoint(const Case& c, double unit, double& x, double& y) {
  if (c.type <= 3) {
    c.forward ? PolyGridForward(c.type, x, y) : PolyGridInverse(c.type, x, y);
  } else {
    c.forward ? ChainGridForward(c.type, unit, x, y) : ChainGridInverse(c.type, unit, x, y);
  }
}

TEST(PolyGridsTest, EveryCoefficientCounts) {
  // clang-format off
  for (const Case& c : {
           Case{4, true, 20000, 40000, 5317.180440564191, 7206.568234031237},
           Case{2, true, 1178361, 7540437, 466101.89695599896, 1522923.5762505408},
           Case{2, true, -721639, 6440437, -1139844.7180695399, -149265.1074768142},
           Case{2, false, -2318719, -2693936, -13284759.656683747, 1933754.3926084617},
           Case{3, true, 40369, 7319828, 113247.88393476025, 547491.3850760303},
           Case{3, true, 1040369, 6069828, 250052.51382209084, 56049.254420350226},
           Case{3, false, 544853, -1211804, 8420741.386527488, -2674053.1783291143},
           Case{3, false, -555147, 988196, 155506.5652242314, 7070731.859420641},
           Case{4, true, 61000, -23000, 46590.711074922256, -55624.25511454356}, Case{4, false, -31000, 52000, -16109.737254200001, 84937.8680709},
           Case{5, true, 61000, -23000, 37941.33599393524, -55307.145026114464}, Case{5, false, -31000, 52000, -7762.933302600001, 84436.8730895},
           Case{6, true, 61000, -23000, 36527.03444819821, -43307.25326189136}, Case{6, false, -31000, 52000, -6350.564480099999, 72398.0553783},
           Case{7, true, 61000, -23000, 36567.091611440745, -43340.44934018886}, Case{7, false, -31000, 52000, -6414.124981799999, 72427.4720087},
           Case{8, true, 61000, -23000, 36525.00135870486, -43358.446048481295}, Case{8, false, -31000, 52000, -6351.5473686999985, 72437.16487760001},
           Case{9, true, 61000, -23000, 36527.30921256806, -43405.08020617223}, Case{9, false, -31000, 52000, -6352.230108599999, 72514.4690092},
           Case{10, true, 61000, -23000, 45557.4055616372, -42994.741421834675}, Case{10, false, -31000, 52000, -15181.235905093365, 72255.61413527251},
           Case{11, true, 61000, -23000, 45503.248462490286, -43040.991337994026}, Case{11, false, -31000, 52000, -15135.756693238662, 72279.32675060687},
           Case{12, true, 61000, -23000, 30274.87249049959, -34221.87680337886}, Case{12, false, -31000, 52000, -211.2187928000002, 63229.3110863},
           Case{13, true, 61000, -23000, 39214.462466583755, -37967.382484584356}, Case{13, false, -31000, 52000, -8990.51235912237, 67086.16984561502},
           Case{14, true, 61000, -23000, 40557.15254636815, -40418.124529783025}, Case{14, false, -31000, 52000, -10281.358406856341, 69561.355297328},
           Case{15, true, 61000, -23000, 48225.06293981422, -52806.97658186683}, Case{15, false, -31000, 52000, -17715.376301, 82109.8149676},
           Case{16, true, 61000, -23000, 34067.459137726546, -50100.155631750335}, Case{16, false, -31000, 52000, -3985.8241984000006, 79168.4642927},
       }) {
    // clang-format on
    double x = c.x;
    double y = c.y;
    ConvertPoint(c, Chain, x, y);
    EXPECT_NEAR(x, c.toX, 5e-16 * std::fabs(c.toX)) << c.type << c.forward;
    EXPECT_NEAR(y, c.toY, 5e-16 * std::fabs(c.toY)) << c.type << c.forward;
    if (c.type > 3) {
      x = c.x * Chain;
      y = c.y * Chain;
      ConvertPoint(c, 1, x, y);
      EXPECT_NEAR(x, c.toX * Chain, 2e-8) << "the same ground position in metres";
      EXPECT_NEAR(y, c.toY * Chain, 2e-8);
    }
  }
}

}  // namespace
}  // namespace latigo
