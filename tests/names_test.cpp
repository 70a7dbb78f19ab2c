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
  // Accents are Windows-1252.
  for (const auto& [unit, request, language, name] : {std::tuple{0.3048, 1, "fra", "pied (int.)"},
                                                      {0.3048, 1, "FRA", "pied (int.)"},
                                                      {0.3048, 1, "esp", "pie (int.)"},
                                                      {0.3048, 1, "jpn", "foot (int.)"},
                                                      {0.3048, 1, "fr", "foot (int.)"},
                                                      {0.3048, 3, "fra", "ft"},
                                                      {0.3048, 2, "", "feet (int.)"},
                                                      {1852.0, 2, "esp", "millas nauticas"},
                                                      {1.0, 1, "fra", "m\xE8tre"},
                                                      {1.0, 2, "fra", "m\xE8tres"},
                                                      {1.0, 5, "esp", "metros"},
                                                      {20.11678249, 4, "fra", "cha\xEEne"},
                                                      {20.1167651216, 6, "chs", "chSea"},
                                                      {0.3048006096, 3, "", "ftUS"},
                                                      {0.211676512, 1, "esp", "link (Sears)"},
                                                      {0.914402, 1, "", "yard"},
                                                      {0.201167651, 1, "", "[12]"},
                                                      {0.3048006096012192, 2, "", "[12]"},
                                                      {0.31, 3, "", "[12]"},
                                                      {0.31, 1, "", "[12]"},
                                                      {1.0, 7, "fra", "est"},
                                                      {1.0, 8, "fra", "X"},
                                                      {1.0, 9, "esp", "norte"},
                                                      {1.0, 10, "esp", "Y"}}) {
    EXPECT_EQ(Name(WithUnit(unit), request, language), name) << unit << " " << request << " " << language;
  }
  EXPECT_EQ(Name(WithUnit(1), 1, "", 3), "me") << "small buffers cut the text";
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

TEST(NamesTest, ReversedAxesChangeTheirNames) {
  const Object object = WithUnit(1);
  for (const auto& [type, names] : {std::pair{0u, "easting X northing Y"},
                                    {0x10002u, "easting X northing Y"},
                                    {0x10001u, "westing Y northing Y"},
                                    {1u, "easting X northing Y"},
                                    {0x30001u, "westing Y southing X"},
                                    {2u, "westing Y southing X"}}) {
    const Adjustment adjustment = {type, 0, 0, 0, 1, 0, 0};
    ASSERT_EQ(SetAdjustment(object.get(), &adjustment), 1);
    EXPECT_EQ(Name(object, 7) + " " + Name(object, 8) + " " + Name(object, 9) + " " + Name(object, 10), names);
  }
  EXPECT_EQ(Name(object, 7, "fra"), "ouest");
  EXPECT_EQ(Name(object, 9, "esp"), "sur");
}

}  // namespace
