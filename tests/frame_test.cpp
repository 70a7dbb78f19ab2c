// Common behaviour of the exports: handles, codes, log lines, threads.
#include <algorithm>
#include <thread>

#include "support.h"

namespace {

using namespace support;

class FrameTest : public Scratch {};

TEST_F(FrameTest, DestroyingTheLastObjectIsLoggedEachTime) {
  Object first = Make(Utm31());
  Object second = Make(Utm31());
  first.reset();
  EXPECT_EQ(Log(), Lines{});
  second.reset();
  EXPECT_EQ(Log(), Lines{"LATIGO - last instance"});
  Make(Utm31()).reset();
  EXPECT_EQ(Log(), Lines{"LATIGO - last instance"});
}

// A caller who needs one of two outputs may give one variable for both.
TEST_F(FrameTest, OneVariableForBothOutputsHoldsTheOneWrittenLast) {
  constexpr std::int32_t xIsLast[] = {12};
  constexpr std::int32_t latitudeIsLast[] = {1, 8, 9, 10, 12};
  const auto contains = [](const auto& kinds, std::int32_t kind) { return std::ranges::count(kinds, kind) != 0; };
  for (std::int32_t kind = 1; kind <= 12; ++kind) {
    SCOPED_TRACE(kind);
    GeodesyParams params = WGS84(kind);
    params.RefLatitude = params.NorthParallel = params.SouthParallel = Rad(45);
    const Object object = Make(params);
    double x = 0, y = 0, latitude = 0, longitude = 0, both = 0;
    EXPECT_TRUE(GeoXY(object.get(), &x, &y, Rad(50), Rad(2)));
    EXPECT_TRUE(GeoXY(object.get(), &both, &both, Rad(50), Rad(2)));
    EXPECT_EQ(both, contains(xIsLast, kind) ? x : y);
    EXPECT_TRUE(XYGeo(object.get(), x, y, &latitude, &longitude));
    EXPECT_TRUE(XYGeo(object.get(), x, y, &both, &both));
    EXPECT_EQ(both, contains(latitudeIsLast, kind) ? latitude : longitude);
  }
}

TEST_F(FrameTest, ThreadsWithTheirOwnObjectsAreIndependent) {
  const std::string grid = Write("grid", Grid{}.Bytes());
  const Lines systems = Systems();
  const auto work = [&](double* last) {
    for (std::size_t i = 0; i < 60; ++i) {
      const Object any = Open(systems[i % systems.size()]);
      const Adjustment local = {static_cast<std::uint32_t>(i % 17), 1, 2, 3, 4, 5, 6};
      EXPECT_EQ(SetAdjustment(any.get(), &local), 1);
      double x, y;
      EXPECT_EQ(GeoXY(any.get(), &x, &y, 0.9, 0.2), 1);
      const Object object = Make(Utm31());
      SetGeoid(object.get(), grid.c_str(), 0);
      EXPECT_EQ(GeoXY(object.get(), &x, &y, HalfPi, 0), 0);
      EXPECT_EQ(GetGeodesyError(), 6);
      EXPECT_EQ(Undulation(object.get(), Rad(50.25), Rad(10.25), last), 1);
      EXPECT_EQ(GetGeodesyError(), 0);
    }
  };
  EXPECT_EQ(DestroyGeodesy(nullptr), 0);
  std::thread([] { EXPECT_EQ(GetGeodesyError(), 0) << "a thread that has called nothing"; }).join();
  double results[8] = {};
  std::vector<std::thread> threads;
  for (double& result : results) { threads.emplace_back(work, &result); }
  for (std::thread& thread : threads) { thread.join(); }
  for (const double result : results) { EXPECT_NEAR(result, 110, 1e-9); }
  EXPECT_EQ(GetGeodesyError(), 2) << "the code of this thread";
}

// For the thread sanitizer: conversions write nothing to an object without a grid file.
TEST_F(FrameTest, ThreadsMayShareAnObjectWithoutAGridFile) {
  for (const std::string& system : Systems()) {
    const Object shared = Open(system);
    double results[2][9] = {};
    const auto convert = [&](double* out) {
      double latitude, longitude, h = 10;
      GeoXY(shared.get(), &out[0], &out[1], 0.9, 0.2);
      XYGeo(shared.get(), out[0], out[1], &out[2], &out[3]);
      latitude = 0.9, longitude = 0.2;
      WGS84Conv(shared.get(), &latitude, &longitude, &h);
      InvWGS84Conv(shared.get(), &latitude, &longitude, &h);
      GeoECEF(shared.get(), &out[4], &out[5], &out[6], latitude, longitude, h);
      out[7] = Scale(shared.get(), out[0], out[1]);
      out[8] = RLineLL(shared.get(), 0.9, 0.2, latitude + 0.01, longitude, nullptr);
    };
    std::thread other([&] { convert(results[1]); });
    convert(results[0]);
    other.join();
    for (int i = 0; i < 9; ++i) { EXPECT_EQ(results[0][i], results[1][i]) << system << ", value " << i; }
  }
}

}  // namespace
