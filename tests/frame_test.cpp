// The frame that all exports share: handles, codes, log lines, threads.
#include <thread>

#include "support.h"

namespace {

using namespace support;

class FrameTest : public Scratch {};

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

TEST_F(FrameTest, NamesOfEllipsoidAndProjectionComeWithTheRecordIfAskedFor) {
  GeodesyParams params = Utm31();
  char name[LATIGO_ELLIPSOID_NAME_SIZE] = "before";
  char code[LATIGO_PROJECTION_CODE_SIZE];
  EXPECT_EQ(GetGeodesyParams(Make(params).get(), &params, name, code), 1);
  EXPECT_STREQ(name, "WGS-84");
  EXPECT_STREQ(code, "TME");
  params.InvFlattening = 256;
  EXPECT_EQ(GetGeodesyParams(Make(params).get(), &params, name, nullptr), 1);
  EXPECT_STREQ(name, "");
  EXPECT_EQ(GetGeodesyParams(Make(params).get(), &params, nullptr, nullptr), 1);
}

TEST_F(FrameTest, NamesAreCutToTheBufferAndUnknownRequestsLeaveItAlone) {
  const Object object = Make(Utm31());
  EXPECT_EQ(Name(object, 1, "", 3), "me");
  EXPECT_EQ(Name(object, 1, "fra", 5), "m\xE8tr");
  char text[8] = "before";
  EXPECT_EQ(GetLocalName(object.get(), 11, "", text, sizeof text), 0);
  EXPECT_STREQ(text, "before");
}

TEST_F(FrameTest, ThreadsWithObjectsOfTheirOwnDoNotMeet) {
  const std::string grid = Write("grid", Grid{}.Bytes());
  const Lines systems = Systems();
  const auto work = [&](double* last) {
    for (std::size_t i = 0; i < 60; ++i) {
      const Object any = Open(systems[i % systems.size()]);
      const Adjustment local = {static_cast<std::uint32_t>(i % 17), 1, 2, 3, 4, 5, 6};
      EXPECT_EQ(SetAdjustment(any.get(), &local), 1);
      EXPECT_EQ(Forward(any, 0.9, 0.2).code, 0);
      const Object object = Make(Utm31());
      SetGeoid(object.get(), grid.c_str(), 0);
      EXPECT_EQ(Forward(object, HalfPi, 0).code, 6);
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

}  // namespace
