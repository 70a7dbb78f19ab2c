#include "errors/errcode.h"

#include <exception>

#include "support.h"

namespace latigo {
namespace {

using support::Lines;

class ErrcodeTest : public support::Scratch {};

TEST_F(ErrcodeTest, AnUnreadValueIsLoggedAndThrownAccordingToItsSeverity) {
  for (std::int16_t severity = -1; severity <= 5; ++severity) {
    SCOPED_TRACE(severity);
    std::int32_t caught = 0;
    try {
      errcode(0, severity);  // success and values that were read are not reported
      errcode(7, severity).code();
      errcode(42, severity);
    } catch (errcode& failure) { caught = failure.code(); }
    EXPECT_EQ(caught, severity >= 4 ? 42 : 0);
    EXPECT_EQ(Log(), severity >= 3 ? Lines{"Log --- Error 42"} : Lines{});
  }
}

TEST_F(ErrcodeTest, CopyingTransfersTheObligationToReport) {
  errcode source(7, 4);
  {
    errcode copy(source);
    EXPECT_EQ(copy.code(), 7);
  }
  errcode pending(8, 4);
  EXPECT_THROW({ errcode heir(pending); }, errcode);
  EXPECT_EQ(Log(), Lines{"Log --- Error 8"});
}

TEST_F(ErrcodeTest, AssignmentReportsThePendingTargetFirst) {
  errcode target(5, 4);
  errcode source(6, 4);
  EXPECT_THROW(target = source, errcode);
  EXPECT_EQ(Log(), Lines{"Log --- Error 5"});
  EXPECT_EQ(source.code(), 6) << "the source keeps its duty when the target throws";

  // A value that has been thrown can be assigned again and is then pending.
  errcode used(3, 4);
  EXPECT_THROW(DefaultFacility->report(used), errcode);
  errcode fresh(4, 4);
  used = fresh;
  EXPECT_THROW({ errcode heir(used); }, errcode);
  Log();

  EXPECT_THROW(
      {
        errcode quiet(0, 0);
        quiet = errcode(9, 4);
      },
      errcode);
  EXPECT_EQ(Log(), Lines{"Log --- Error 9"});
  errcode quiet(0, 0);
  quiet = errcode(9, 4);
  EXPECT_EQ(quiet.code(), 9);
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(ErrcodeTest, AValueThrownDirectlyIsStillPendingWhenCaughtAndOneOfTheFacilityIsNot) {
  try {
    errcode(2, 4);
  } catch (errcode&) {}
  EXPECT_EQ(Log(), Lines{"Log --- Error 2"}) << "logged as it was thrown, and not again";
  try {
    throw errcode(3, 3);
  } catch (errcode&) {}
  EXPECT_EQ(Log(), Lines{"Log --- Error 3"}) << "left unread, it reports as the exception object dies";
  try {
    throw errcode(3, 4);
  } catch (errcode& failure) { EXPECT_EQ(failure.code(), 3); }
  EXPECT_EQ(Log(), Lines{});
}

TEST_F(ErrcodeTest, FacilitiesHaveNamesAndReportTheirOwnValues) {
  struct Silent : errfacility {
    using errfacility::errfacility;
    void report(errcode&) override { ++reports; }
    int reports = 0;
  };
  Silent silent("Silent");
  errfacility grid("Grid");
  errcode(9, 0, &silent);
  errcode(10, 1, &silent);
  errcode(12, 3, &grid);
  EXPECT_EQ(silent.reports, 1);
  EXPECT_EQ(Log(), Lines{"Log --- Grid 12"});
  EXPECT_EQ(GridFacility, DefaultFacility);
}

}  // namespace
}  // namespace latigo
