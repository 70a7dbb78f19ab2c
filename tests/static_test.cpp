// The library linked statically, called by the constructor and the destructor of a static object of the program.
#include <unistd.h>

#include <tuple>

#include "support.h"

namespace {

using support::Rad;

struct Calls {
  Calls() {
    const GeodesyParams params = support::Utm31();
    const EllDiff diff = {87, 98, 121, 1, 0, 0, 0};
    object = CreateGeodesy(&params);
    SetEllDiff(object, &diff);
    WGS84Conv(object, &latitude, &longitude, &height);
    GeoXY(object, &x, &y, support::HalfPi, 0);
    code = GetGeodesyError();
  }
  ~Calls() {
    if (GeoXY(object, &x, &y, support::HalfPi, 0) != 0 || GetGeodesyError() != 6) { _exit(1); }
    DestroyGeodesy(object);
  }

  GeodesyHandle object;
  double latitude = Rad(50), longitude = Rad(3), height = 100, x = 0, y = 0;
  std::int32_t code = 0;
};

const Calls Early;

TEST(StaticTest, StaticObjectsOfTheProgramMayCallExports) {
  EXPECT_EQ(Early.code, 6);
  const Calls late;
  EXPECT_EQ(std::tie(Early.latitude, Early.longitude, Early.height),
            std::tie(late.latitude, late.longitude, late.height));
}

}  // namespace
