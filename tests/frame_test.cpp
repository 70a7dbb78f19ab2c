// The frame that all exports share: handles, codes, log lines, threads.
#include <thread>

#include "support.h"

namespace {

using namespace support;

class FrameTest : public Scratch {};

TEST_F(FrameTest, RecordsWithFaultsAreRefusedInTheOrderOfTestingAndWithoutALogLine) {
  struct Case {
    const char* what;
    std::int32_t kind;
    std::function<void(GeodesyParams&)> spoil;
    std::int32_t code;
  };
  const Object other = Make(Utm31());
  // clang-format off
  for (const auto& [what, kind, spoil, code] : {
           Case{"no flattening, no unit, no kind", 0, [](auto& p) { p.InvFlattening = p.Unit = 0; }, 3},
           Case{"no unit, no kind", 0, [](auto& p) { p.Unit = 0; }, 4},
           Case{"kind 0", 0, [](auto&) {}, 5},
           Case{"kind 12", 12, [](auto&) {}, 0},
           Case{"Albers about the equator", 10, [](auto& p) { p.NorthParallel = 1, p.SouthParallel = -1; }, 7},
           Case{"Albers on the equator", 10, [](auto&) {}, 7},
           Case{"kind 13", 13, [](auto&) {}, 5},
           Case{"kind -1", -1, [](auto&) {}, 5},
           Case{"Mercator true at the north pole", MercatorKind, [](auto& p) { p.RefLatitude = HalfPi; }, 7},
           Case{"Mercator true at the south pole", MercatorKind, [](auto& p) { p.RefLatitude = -HalfPi; }, 0},
           Case{"Mercator on a prolate ellipsoid", MercatorKind, [](auto& p) { p.InvFlattening = -298; }, 0},
           Case{"a unit without a name", MercatorKind, [](auto& p) { p.Unit = 2.5; }, 0},
           Case{"transverse Mercator without size", TransverseKind, [](auto& p) { p.SemiMajorAxis = 0; }, 7},
           Case{"transverse Mercator of no numbers", TransverseKind, [](auto& p) { p.SemiMajorAxis = p.Unit = NaN; }, 0},
           Case{"Lambert true on the equator", LambertKind, [](auto&) {}, 7},
           Case{"Lambert about the equator", LambertKind, [](auto& p) { p.NorthParallel = 1, p.SouthParallel = -1; }, 7},
           Case{"Lambert from the pole", LambertKind, [](auto& p) { p.NorthParallel = p.SouthParallel = HalfPi; }, 0},
           Case{"sphere of no numbers", SMercKind, [](auto& p) { p.SemiMajorAxis = NaN; }, 0},
       }) {
    // clang-format on
    GeodesyParams params = WGS84(kind);
    spoil(params);
    const Object object(CreateGeodesy(&params));
    EXPECT_EQ(GetGeodesyError(), code) << what;
    EXPECT_EQ(object != nullptr, code == 0) << what;
    EXPECT_EQ(Log(), Lines{}) << what;
  }
}

TEST_F(FrameTest, TheLastInstanceIsLoggedEachTimeNoneIsLeft) {
  Object first = Make(Utm31());
  Object second = Make(Utm31());
  first.reset();
  EXPECT_EQ(Log(), Lines{});
  second.reset();
  EXPECT_EQ(Log(), Lines{"LATIGO - last instance"});
  Make(Utm31()).reset();
  EXPECT_EQ(Log(), Lines{"LATIGO - last instance"});
}

TEST_F(FrameTest, EveryExportRefusesANullHandleAndTouchesNothing) {
  double a = 1;
  double b = 2;
  double c = 3;
  char text[40] = "untouched";
  GeodesyParams params{};
  EllDiff diff{};
  Adjustment adjustment{};
  const Object object = Make(Utm31());
  const auto refused = [&](double result) {
    const bool code = GetGeodesyVersion() == 1302 && GetGeodesyError() == 2;
    return result == 0 && code && Forward(object, 0.9, 0.1).code == 0;
  };
  EXPECT_TRUE(refused(DestroyGeodesy(nullptr)) && refused(ECEFGeo(nullptr, 1, 2, 3, &a, &b, &c)) &&
              refused(EllConv(nullptr, &a, &b, &c, 1, 0)) && refused(InvEllConv(nullptr, &a, &b, &c, 1, 0)));
  EXPECT_TRUE(refused(GeoECEF(nullptr, &a, &b, &c, 1, 2, 3)) && refused(GeoXY(nullptr, &a, &b, 1, 2)) &&
              refused(XYGeo(nullptr, 1, 2, &a, &b)) && refused(Scale(nullptr, 1, 2) - 1.0));
  EXPECT_TRUE(refused(GetAdjustment(nullptr, &adjustment)) && refused(SetAdjustment(nullptr, &adjustment)) &&
              refused(GetEllDiff(nullptr, &diff)) && refused(SetEllDiff(nullptr, &diff)));
  EXPECT_TRUE(refused(GetEllModel(nullptr, text, 40)) && refused(SetEllModel(nullptr, text)) &&
              refused(GetGeoid(nullptr, text, 40, &a)) && refused(SetGeoid(nullptr, text, 1)));
  EXPECT_TRUE(refused(GetGeodesyParams(nullptr, &params, text, text)) && refused(Undulation(nullptr, 1, 2, &a)) &&
              refused(GetLocalName(nullptr, 1, "", text, 40)) && refused(HConvert(nullptr, &a, 1)));
  EXPECT_TRUE(refused(VConvert(nullptr, &a, 1)) && refused(WGS84Conv(nullptr, &a, &b, &c)) &&
              refused(InvWGS84Conv(nullptr, &a, &b, &c)));
  EXPECT_TRUE(a == 1 && b == 2 && c == 3 && std::string(text) == "untouched");
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(FrameTest, ParametersComeBackAsTheObjectUsesThem) {
  GeodesyParams params = {6378137, 256, TransverseKind, 0.5, 0, 0.1, 0.2, 0.3, 0.4, 0.5, 6, 7};
  GeodesyParams back{};
  char name[LATIGO_ELLIPSOID_NAME_SIZE] = "before";
  char code[LATIGO_PROJECTION_CODE_SIZE];
  EXPECT_EQ(GetGeodesyParams(Make(params).get(), &back, name, code), 1);
  EXPECT_STREQ(name, "");
  EXPECT_STREQ(code, "TME");
  params.ScaleFactor = 1;
  EXPECT_TRUE(Same(back, params));
  EXPECT_EQ(GetGeodesyParams(Make(Utm31()).get(), &back, name, nullptr), 1);
  EXPECT_STREQ(name, "WGS-84");
  EXPECT_EQ(GetGeodesyParams(Make(Utm31()).get(), &back, nullptr, nullptr), 1);
}

TEST_F(FrameTest, ConversionsThatFailAreLoggedAndReadsThatFailAreNot) {
  const Object object = Make(Utm31());
  EXPECT_EQ(Inverse(object, 500000, 9997965).code, 10);
  EXPECT_EQ(Log(), Lines{"Log --- Error 10"});
  EXPECT_EQ(Scale(object.get(), 500000, 9997965), 1.0);
  EXPECT_EQ(GetGeodesyError(), 10);
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(FrameTest, ThreadsWithObjectsOfTheirOwnDoNotMeet) {
  const std::string grid = Write("grid", Grid{}.Bytes());
  const auto work = [&](double* last) {
    for (int i = 0; i < 50; ++i) {
      const Object object = Make(Utm31());
      SetGeoid(object.get(), grid.c_str(), 0);
      EXPECT_EQ(Forward(object, HalfPi, 0).code, 6);
      EXPECT_EQ(Undulation(object.get(), Rad(50.25), Rad(10.25), last), 1);
      EXPECT_EQ(GetGeodesyError(), 0);
    }
  };
  EXPECT_EQ(DestroyGeodesy(nullptr), 0);
  std::thread([] { EXPECT_EQ(GetGeodesyError(), 0) << "a thread that has called nothing"; }).join();
  double results[3] = {};
  std::vector<std::thread> threads;
  for (double& result : results) { threads.emplace_back(work, &result); }
  for (std::thread& thread : threads) { thread.join(); }
  for (const double result : results) { EXPECT_NEAR(result, 110, 1e-9); }
  EXPECT_EQ(GetGeodesyError(), 2) << "the code of this thread";
}

}  // namespace
