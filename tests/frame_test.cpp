// The frame that all exports share: handles, codes, log lines, threads.
#include <thread>

#include "support.h"

namespace {

using namespace support;

class FrameTest : public Scratch {};

TEST_F(FrameTest, RecordsWithFaultsAreRefusedInTheOrderOfTesting) {
  struct Case {
    const char* what;
    std::function<void(GeodesyParams&)> spoil;
    std::int32_t code;
  };
  const Case cases[] = {
      {"no flattening, no unit, no kind", [](auto& p) { p.InvFlattening = p.Unit = p.Kind = 0; }, 3},
      {"no unit, no kind", [](auto& p) { p.Unit = p.Kind = 0; }, 4},
      {"kind 0", [](auto& p) { p.Kind = 0; }, 5},
      {"kind 13", [](auto& p) { p.Kind = 13; }, 5},
      {"kind -1", [](auto& p) { p.Kind = -1; }, 5},
      {"Mercator true at the north pole", [](auto& p) { p.Kind = MercatorKind, p.RefLatitude = HalfPi; }, 7},
      {"transverse Mercator without size", [](auto& p) { p.Kind = TransverseKind, p.SemiMajorAxis = 0; }, 7},
      {"Lambert true on the equator", [](auto& p) { p.Kind = LambertKind; }, 7},
      {"Lambert about the equator",
       [](auto& p) { p.Kind = LambertKind, p.NorthParallel = Rad(40), p.SouthParallel = Rad(-40); }, 7},
      {"Mercator true at the south pole", [](auto& p) { p.Kind = MercatorKind, p.RefLatitude = -HalfPi; }, 0},
      {"Mercator on a prolate ellipsoid", [](auto& p) { p.InvFlattening = -298; }, 0},
      {"a unit without a name", [](auto& p) { p.Unit = 2.5; }, 0},
  };
  for (const auto& [what, spoil, code] : cases) {
    GeodesyParams params = WGS84(MercatorKind);
    spoil(params);
    const Object object(CreateGeodesy(&params));
    EXPECT_EQ(GetGeodesyError(), code) << what;
    EXPECT_EQ(object != nullptr, code == 0) << what;
  }
}

TEST_F(FrameTest, CreationFailsWithoutALogLineAndLeavesNoObjectBehind) {
  const Object first = Make(Utm31());
  GeodesyParams params = Utm31();
  params.Unit = 0;
  EXPECT_EQ(CreateGeodesy(&params), nullptr);
  EXPECT_EQ(Log(), Lines{});
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
  GeodesyParams params = Utm31();
  EllDiff diff{};
  Adjustment adjustment{};
  const std::function<double()> calls[] = {
      [&] { return DestroyGeodesy(nullptr); },
      [&] { return ECEFGeo(nullptr, 1, 2, 3, &a, &b, &c); },
      [&] { return EllConv(nullptr, &a, &b, &c, 1, 0); },
      [&] { return GeoECEF(nullptr, &a, &b, &c, 1, 2, 3); },
      [&] { return GeoXY(nullptr, &a, &b, 1, 2); },
      [&] { return GetAdjustment(nullptr, &adjustment); },
      [&] { return GetEllDiff(nullptr, &diff); },
      [&] { return GetEllModel(nullptr, text, 40); },
      [&] { return GetGeodesyParams(nullptr, &params, text, text); },
      [&] { return GetGeoid(nullptr, text, 40, &a); },
      [&] { return GetLocalName(nullptr, 1, "", text, 40); },
      [&] { return HConvert(nullptr, &a, 1); },
      [&] { return InvEllConv(nullptr, &a, &b, &c, 1, 0); },
      [&] { return InvWGS84Conv(nullptr, &a, &b, &c); },
      [&] { return Scale(nullptr, 1, 2) - 1.0; },
      [&] { return SetAdjustment(nullptr, &adjustment); },
      [&] { return SetEllDiff(nullptr, &diff); },
      [&] { return SetEllModel(nullptr, text); },
      [&] { return SetGeoid(nullptr, text, 1); },
      [&] { return Undulation(nullptr, 1, 2, &a); },
      [&] { return VConvert(nullptr, &a, 1); },
      [&] { return WGS84Conv(nullptr, &a, &b, &c); },
      [&] { return XYGeo(nullptr, 1, 2, &a, &b); },
  };
  const Object object = Make(Utm31());
  for (const auto& call : calls) {
    EXPECT_EQ(GetGeodesyVersion(), 1302);
    EXPECT_EQ(call(), 0);
    EXPECT_EQ(GetGeodesyError(), 2);
    EXPECT_EQ(GetGeodesyVersion(), 1302);
    EXPECT_EQ(GetGeodesyError(), 2) << "asking for the version leaves the code alone";
    EXPECT_EQ(GeoXY(object.get(), &params.FalseEasting, &params.FalseNorthing, 0.9, 0.1), 1);
    EXPECT_EQ(GetGeodesyError(), 0);
  }
  EXPECT_EQ(a, 1);
  EXPECT_EQ(b, 2);
  EXPECT_EQ(c, 3);
  EXPECT_STREQ(text, "untouched");
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(FrameTest, ParametersComeBackAsTheObjectUsesThem) {
  GeodesyParams params = Utm31();
  params.ScaleFactor = 0;
  params.NorthParallel = 0.1;
  params.SouthParallel = 0.2;
  params.SkewAzimuth = 0.3;
  params.FalseNorthing = 4;
  params.RefLatitude = 0.5;
  const Object object = Make(params);
  GeodesyParams back{};
  char name[LATIGO_ELLIPSOID_NAME_SIZE];
  char code[LATIGO_PROJECTION_CODE_SIZE];
  EXPECT_EQ(GetGeodesyParams(object.get(), &back, name, code), 1);
  EXPECT_STREQ(name, "WGS-84");
  EXPECT_STREQ(code, "TME");
  EXPECT_NEAR(back.InvFlattening, 298.257223563, 1e-12);
  EXPECT_EQ(back.ScaleFactor, 1.0);
  back.InvFlattening = params.InvFlattening;
  back.ScaleFactor = 0;
  EXPECT_EQ(std::memcmp(&back, &params, sizeof params), 0);

  params.SemiMajorAxis = 6371000;
  EXPECT_EQ(GetGeodesyParams(Make(params).get(), &back, name, nullptr), 1);
  EXPECT_STREQ(name, "");
  EXPECT_EQ(GetGeodesyParams(Make(params).get(), &back, nullptr, nullptr), 1);
}

TEST_F(FrameTest, ConversionsThatFailAreLoggedAndReadsThatFailAreNot) {
  const Object object = Make(Utm31());
  double latitude = 0;
  double longitude = 0;
  EXPECT_EQ(XYGeo(object.get(), 500000, 9997965, &latitude, &longitude), 0);
  EXPECT_EQ(GetGeodesyError(), 10);
  EXPECT_EQ(Log(), Lines{"Log --- Error 10"});
  EXPECT_EQ(Scale(object.get(), 500000, 9997965), 1.0);
  EXPECT_EQ(GetGeodesyError(), 10);
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(FrameTest, EachThreadHasItsOwnLastError) {
  EXPECT_EQ(DestroyGeodesy(nullptr), 0);
  std::int32_t before = -1;
  std::int32_t after = -1;
  std::thread([&] {
    before = GetGeodesyError();
    GeodesyParams params = Utm31();
    params.Unit = 0;
    CreateGeodesy(&params);
    after = GetGeodesyError();
  }).join();
  EXPECT_EQ(before, 0);
  EXPECT_EQ(after, 4);
  EXPECT_EQ(GetGeodesyError(), 2);
}

TEST_F(FrameTest, ThreadsWithObjectsOfTheirOwnDoNotMeet) {
  const std::string grid = Write("grid", Grid{}.Bytes());
  const auto work = [&](double* last) {
    for (int i = 0; i < 50; ++i) {
      const Object object = Make(Utm31());
      SetGeoid(object.get(), grid.c_str(), 0);
      double x = 0;
      double y = 0;
      EXPECT_EQ(GeoXY(object.get(), &x, &y, HalfPi, 0), 0);
      EXPECT_EQ(Undulation(object.get(), Rad(50.25), Rad(10.25), last), 1);
      EXPECT_EQ(GetGeodesyError(), 0);
    }
  };
  double results[3] = {};
  std::vector<std::thread> threads;
  for (double& result : results) {
    threads.emplace_back(work, &result);
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (const double result : results) {
    EXPECT_NEAR(result, 110, 1e-9);
  }
}

}  // namespace
