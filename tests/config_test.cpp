// Objects from configuration files.
#include <clocale>

#include "support.h"

namespace {

using namespace support;

// The smallest section that opens: UTM 31.
const std::string Utm =
    "Projection=UTM\nSemiMajorAxis=6378137\nFlattening=298.257223563\nCentralMeridian=3\nScaleFactor=0.9996\n"
    "FalseEasting=500000\n";

// The grid files of this program stand in one directory, since the install directory is found once and kept.
class ConfigTest : public Scratch {
 protected:
  static void SetUpTestSuite() {
    char name[] = "/tmp/latigo-install-XXXXXX";
    install_ = mkdtemp(name);
    setenv("TWI_BATHYX", install_.c_str(), 1);
    std::filesystem::create_directory(install_ + "/datum");
    Grid two;
    two.nz = 2;
    Grid south = two;
    south.south = -91;
    for (const auto& [file, bytes] : {std::pair{"grid.dat", Grid{}.Bytes()},
                                      {"two.dat", two.Bytes()},
                                      {"short.dat", std::string("short")},
                                      {"range.dat", south.Bytes()}}) {
      std::ofstream(install_ + "/datum/" + file, std::ios::binary) << bytes;
    }
  }
  static void TearDownTestSuite() { std::filesystem::remove_all(install_); }

  Object Open(const std::string& keys, const char* section = nullptr) const {
    return Object(CreateFileGeodesy(Write("file.ini", "[Geodesy]\n" + keys).c_str(), section));
  }
  GeodesyParams Params(const std::string& keys) const {
    GeodesyParams params{};
    const Object object = Open(keys);
    EXPECT_EQ(GetGeodesyError(), object ? 0 : 5) << keys;
    GetGeodesyParams(object.get(), &params, nullptr, nullptr);
    return params;
  }
  Adjustment Adjusted(const std::string& keys) const {
    Adjustment adjustment{};
    GetAdjustment(Open(Utm + keys).get(), &adjustment);
    return adjustment;
  }
  EllDiff Diff(const std::string& keys) const {
    EllDiff diff{};
    GetEllDiff(Open(Utm + keys).get(), &diff);
    return diff;
  }

  static inline std::string install_;
  Object other_ = Make(Utm31());  // keeps the line of the last instance out of the log
};

TEST_F(ConfigTest, EveryNumberReachesItsFieldInItsUnit) {
  constexpr double Degree = 0.017453292519943295;
  EXPECT_TRUE(
      Same(Params("Projection=Lambert\nSemiMajorAxis=6378206.4\nFlattening=294.5\nScaleFactor=0.5\nRefLatitude=45\n"
                  "CentralMeridian=-90\nNorthParallel=30\nSouthParallel=60\nSkewAzimuth=10\nUnit=0.3048\n"
                  "FalseEasting=11\nFalseNorthing=-12.5\n"),
           GeodesyParams{6378206.4, 1 / (1 / 294.5), LambertKind, 0.3048, 0.5, -90 * Degree, 45 * Degree, 30 * Degree,
                         60 * Degree, 10 * Degree, 11, -12.5}));
  EXPECT_TRUE(Same(Diff("DeltaX=1.5\nDeltaY=-2\nDeltaZ=3\nDeltaScale=1\nDeltaRX=3600\nDeltaRY=-1\nDeltaRZ=2\n"),
                   EllDiff{1.5, -2, 3, 1.000001, 3600 * Pi / 648000, -1 * Pi / 648000, 2 * Pi / 648000}));
  EXPECT_TRUE(Same(Adjusted("AdjustType=1\nAdjustRotation=30\nAdjustScale=2\nAdjustX=10\nAdjustY=20\nAdjustOrigX=1000\n"
                            "AdjustOrigY=2000\nReverseX=on\n"),
                   Adjustment{0x10001, 1000, 2000, 30 * Pi / 180, 2, 10, 20}));
}

TEST_F(ConfigTest, ZerosAndMissingKeysHaveTheirMeaning) {
  for (const std::string zeros : {"", "ScaleFactor=0\nUnit=0\nAdjustScale=0\nVertUnit=0\nDynDatum=\nGeoid=\n"}) {
    EXPECT_TRUE(Same(Params("Projection=UTM\nSemiMajorAxis=6378137\nFlattening=298\n" + zeros),
                     GeodesyParams{6378137, 1 / (1 / 298.0), TransverseKind, 1, 1, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(Same(Adjusted(zeros), Adjustment{0, 0, 0, 0, 1, 0, 0}));
    EXPECT_TRUE(Same(Diff(zeros), EllDiff{0, 0, 0, 1, 0, 0, 0}));
  }
}

TEST_F(ConfigTest, ProjectionKeywordsIgnoreCapitalsAndCountWhole) {
  for (const auto& [keyword, kind] : {std::pair{"utm", 3},
                                      {"TransMerc", 3},
                                      {"TME", 3},
                                      {"lc1", 1},
                                      {"LCC", 1},
                                      {"lambert", 1},
                                      {"Mercator", 2},
                                      {"mer", 2},
                                      {"SMerc", 9},
                                      {"CME", 9},
                                      {"Hotine", 0},
                                      {"UT", 0},
                                      {"UTMX", 0},
                                      {"3", 0},
                                      {"", 0}}) {
    const std::string keys = "SemiMajorAxis=6378137\nFlattening=298\nNorthParallel=45\nProjection=";
    EXPECT_EQ(std::int32_t{Params(keys + keyword + "\n").Kind}, kind) << keyword;
  }
}

TEST_F(ConfigTest, WhatCannotBeMadeIsRefusedWithItsCode) {
  struct Case {
    std::string keys;
    std::int32_t code;
    Lines log;
  };
  for (const auto& [keys, code, log] :
       {Case{"SemiMajorAxis=6378137\n", 5, {}}, Case{"Projection=UTM\n", 3, {}},
        Case{"Projection=LCC\nSemiMajorAxis=6378137\nFlattening=298\n", 7, {}},
        Case{Utm + "DynDatum=nothing.dat\n", 1, {"Log --- Error 1"}},
        Case{Utm + "DynDatum=range.dat\n", 2, {"Log --- Error 2"}},
        Case{Utm + "DynDatum=short.dat\n", 3, {"Log --- Error 3"}},
        Case{Utm + "DynDatum=datum/two.dat\n", 1, {"Log --- Error 1"}},  // a slash is an ordinary character
        Case{Utm + "DynDatum=" + std::string(240, 'x') + "\n", 1, {"Log --- Error 1"}}}) {
    EXPECT_FALSE(Open(keys)) << keys;
    EXPECT_EQ(GetGeodesyError(), code) << keys;
    EXPECT_EQ(Log(), log) << keys;
  }
  EXPECT_EQ(CreateFileGeodesy(Path("nothing.ini").c_str(), nullptr), nullptr);
  EXPECT_EQ(GetGeodesyError(), 5);
  EXPECT_FALSE(Open(Utm, "Elsewhere"));
  EXPECT_EQ(GetGeodesyError(), 5);
}

TEST_F(ConfigTest, ADatumGridTakesThePlaceOfTheSevenValuesAndLiesInTheDatumFolder) {
  for (const char* name : {"two.dat", "c:\\elsewhere\\two.dat", "..\\two.dat"}) {
    const std::string keys = "DeltaX=5\nDynDatum=" + std::string(name) + "\n";
    EXPECT_TRUE(Same(Diff(keys), EllDiff{0, 0, 0, -1, 0, 0, 0}));
    char path[256] = "";
    GetEllModel(Open(Utm + keys).get(), path, sizeof path);
    EXPECT_EQ(path, install_ + "\\datum\\two.dat");
  }
  setenv("TWI_BATHYX", "/nowhere", 1);
  EXPECT_TRUE(Open(Utm + "DynDatum=two.dat\n")) << "the install directory is found once";
}

TEST_F(ConfigTest, TheAdjustmentTakesItsFlagsOnTopOfTheType) {
  for (const auto& [keys, type] : {std::pair{"AdjustType=1\nReverseX=on\n", 0x10001u},
                                   {"AdjustType=1\nReverseY=YES\n", 0x20001u},
                                   {"ReverseX=True\nReverseY=1x\n", 0x30000u},
                                   {"AdjustType=1\nReverseX=2\nReverseY=off\n", 1u},
                                   {"AdjustType=65537\nReverseX=no\n", 0x10001u},
                                   {"AdjustType=7 and more\n", 7u}}) {
    EXPECT_EQ(std::uint32_t{Adjusted(keys).AdjustType}, type) << keys;
  }
}

TEST_F(ConfigTest, AGeoidThatCannotBeLoadedLeavesAnObjectAndCodeNine) {
  double value = 0;
  EXPECT_EQ(Undulation(Open(Utm + "Geoid=grid.dat\nOrthoHCorr=2.5\n").get(), Rad(50.25), Rad(10.25), &value), 1);
  EXPECT_NEAR(value, 112.5, 1e-9);
  for (const auto& [name, first] : {std::pair{"nothing.dat", "1"}, {"short.dat", "3"}, {"two.dat", "2"}}) {
    const Object object = Open(Utm + "Geoid=" + name + "\nOrthoHCorr=2.5\n");
    EXPECT_EQ(GetGeodesyError(), 9);
    EXPECT_EQ(Log(), (Lines{std::string("Log --- Error ") + first, "Log --- Error 9"}));
    EXPECT_EQ(Undulation(object.get(), Rad(50.25), Rad(10.25), &value), 1);
    EXPECT_EQ(value, 0);
  }
}

TEST_F(ConfigTest, VerticalUnitsHaveNamesOfTheirOwn) {
  for (const auto& [keys, horizontal] :
       {std::pair{"Unit=1\nVertUnit=0.3048\n", "meter"}, {"Unit=0.3048\n", "foot (int.)"}}) {
    const Object object = Open(Utm + keys);
    EXPECT_EQ(Name(object, 1), horizontal);
    EXPECT_EQ(Name(object, 4), "foot (int.)");
    double length = 100;
    VConvert(object.get(), &length, 1);
    EXPECT_NEAR(length, 30.48, 1e-13);
  }
}

TEST_F(ConfigTest, NumbersDoNotChangeWithTheLocaleOfTheHost) {
  ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr) << "scripts/install-deps makes this locale";
  ASSERT_STREQ(std::localeconv()->decimal_point, ",");
  const GeodesyParams params = Params(Utm + "RefLatitude=1.5\nFalseNorthing=2,5\n");
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(double{params.ScaleFactor}, 0.9996);
  EXPECT_EQ(double{params.FalseNorthing}, 2) << "a comma ends a number";
}

}  // namespace
