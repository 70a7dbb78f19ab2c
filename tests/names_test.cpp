// Names of units and axes.
#include "support.h"

namespace {

using namespace support;

Object WithUnit(double unit) {
  GeodesyParams params = Utm31();
  params.Unit = unit;
  return Make(params);
}

TEST(NamesTest, UnitsHaveNamesInThreeLanguagesAndFallBackToEnglish) {
  struct Case {
    double unit;
    std::int32_t request;
    const char* language;
    const char* name;
  };
  // Accents are Windows-1252.
  for (const auto& [unit, request, language, name] : {Case{0.3048, 1, "fra", "pied (int.)"},
                                                      Case{0.3048, 1, "FRA", "pied (int.)"},
                                                      Case{0.3048, 1, "esp", "pie (int.)"},
                                                      Case{0.3048, 1, "jpn", "foot (int.)"},
                                                      Case{0.3048, 1, "fr", "foot (int.)"},
                                                      Case{0.3048, 3, "fra", "ft"},
                                                      Case{0.3048, 2, "", "feet (int.)"},
                                                      Case{1852, 2, "esp", "millas nauticas"},
                                                      Case{1, 1, "fra", "m\xE8tre"},
                                                      Case{1, 2, "fra", "m\xE8tres"},
                                                      Case{1, 5, "esp", "metros"},
                                                      Case{20.11678249, 4, "fra", "cha\xEEne"},
                                                      Case{20.1167651216, 6, "chs", "chSea"},
                                                      Case{0.3048006096, 3, "", "ftUS"},
                                                      Case{0.211676512, 1, "esp", "link (Sears)"},
                                                      Case{0.914402, 1, "", "yard"},
                                                      Case{0.201167651, 1, "", "[12]"},
                                                      Case{0.3048006096012192, 2, "", "[12]"},
                                                      Case{0.31, 3, "", "[12]"},
                                                      Case{0.31, 1, "", "[12]"},
                                                      Case{1, 7, "fra", "est"},
                                                      Case{1, 8, "fra", "X"},
                                                      Case{1, 9, "esp", "norte"},
                                                      Case{1, 10, "esp", "Y"}}) {
    EXPECT_EQ(Name(WithUnit(unit), request, language), name) << unit << " " << request << " " << language;
  }
}

TEST(NamesTest, UnknownRequestsLeaveTheBufferUntouched) {
  const Object object = WithUnit(1);
  for (const std::int32_t request : {0, 11, -1}) {
    char text[8] = "before";
    EXPECT_EQ(GetLocalName(object.get(), request, "", text, sizeof text), 0);
    EXPECT_EQ(GetGeodesyError(), 12);
    EXPECT_STREQ(text, "before");
  }
}

TEST(NamesTest, SmallBuffersCutTheText) {
  EXPECT_EQ(Name(WithUnit(1), 1, "", 3), "me");
}

TEST(NamesTest, ReversedAxesChangeTheirNames) {
  const Object object = WithUnit(1);
  struct Case {
    std::uint32_t type;
    const char *firstWord, *firstLetter, *secondWord, *secondLetter;
  };
  for (const auto& [type, firstWord, firstLetter, secondWord, secondLetter] :
       {Case{0, "easting", "X", "northing", "Y"}, Case{0x10002, "easting", "X", "northing", "Y"},
        Case{0x10001, "westing", "Y", "northing", "Y"}, Case{1, "easting", "X", "northing", "Y"},
        Case{0x30001, "westing", "Y", "southing", "X"}, Case{2, "westing", "Y", "southing", "X"},
        Case{0, "westing", "Y", "southing", "X"}}) {
    const Adjustment adjustment = {type, 0, 0, 0, 1, 0, 0};
    ASSERT_EQ(SetAdjustment(object.get(), &adjustment), 1);
    EXPECT_EQ(Name(object, 7), firstWord);
    EXPECT_EQ(Name(object, 8), firstLetter);
    EXPECT_EQ(Name(object, 9), secondWord);
    EXPECT_EQ(Name(object, 10), secondLetter);
  }
  EXPECT_EQ(Name(object, 7, "fra"), "ouest");
  EXPECT_EQ(Name(object, 9, "esp"), "sur");
}

}  // namespace
