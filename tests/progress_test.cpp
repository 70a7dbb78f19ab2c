// The text of the progress of long work, by arithmetic.
#include "progress.h"

#include <gtest/gtest.h>

namespace latigo::cli {
namespace {

TEST(ProgressText, HasThreeDigitsOfASizeAndTheTimeLeftInWholeSeconds) {
  EXPECT_EQ(ProgressText(999, {}, 7, 2), "999 B, 3 rows a second");
  EXPECT_EQ(ProgressText(1000, {}, 8, 2), "1 kB, 4 rows a second");
  EXPECT_EQ(ProgressText(812000000, {}, 1204000, 0.5), "812 MB, 2408000 rows a second");
  EXPECT_EQ(ProgressText(2500000000000000, {}, 0, 1), "2.5e+03 TB, 0 rows a second");
  EXPECT_EQ(ProgressText(430, 1000, 40, 20), " 43 % of 1 kB, 2 rows a second, 0:27 left");
  EXPECT_EQ(ProgressText(1, 3600, 1, 1), "  0 % of 3.6 kB, 1 rows a second, 59:59 left");
  EXPECT_EQ(ProgressText(1, 3601, 1, 1), "  0 % of 3.6 kB, 1 rows a second, 1:00:00 left");
  EXPECT_EQ(ProgressText(1000, 22687000, 10, 10), "  0 % of 22.7 MB, 1 rows a second, 63:01:00 left");
  EXPECT_EQ(ProgressText(1000, 727000, 10, 10), "  0 % of 727 kB, 1 rows a second, 2:01:00 left");
}

TEST(ProgressText, HasNoShareOfAFileThatGrowsOrHasNoSize) {
  EXPECT_EQ(ProgressText(1000, 1000, 10, 10), "100 % of 1 kB, 1 rows a second, 0:00 left");
  EXPECT_EQ(ProgressText(1001, 1000, 10, 10), "1 kB, 1 rows a second");
  EXPECT_EQ(ProgressText(0, 1000, 0, 10), "0 B, 0 rows a second");
}

TEST(ProgressText, OmitsPartsOnANarrowTerminal) {
  const std::string all = " 43 % of 1 kB, 2 rows a second, 0:27 left";
  EXPECT_EQ(ProgressText(430, 1000, 40, 20, all.size()), all);
  EXPECT_EQ(ProgressText(430, 1000, 40, 20, all.size() - 1), " 43 % of 1 kB, 0:27 left");
  EXPECT_EQ(ProgressText(430, 1000, 40, 20, 23), " 43 % of 1 kB");
  EXPECT_EQ(ProgressText(430, 1000, 40, 20, 5), " 43 %");
}

}  // namespace
}  // namespace latigo::cli
