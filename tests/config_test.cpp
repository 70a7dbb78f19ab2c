// Objects from configuration files.
#include <clocale>

#include "support.h"

namespace {

using namespace support;

// The smallest section that opens: UTM 31.
const char* const Utm =
    "Projection=UTM\nSemiMajorAxis=6378137\nFlattening=298.257223563\nCentralMeridian=3\nScaleFactor=0.9996\n"
    "FalseEasting=500000\n";

// The grid files of this program stand in one directory, since the install directory is found once and kept.
class ConfigTest : public Scratch {
 protected:
  static void SetUpTestSuite() {
    char name[] = "/tmp/latigo-install-XXXXXX";
    install_ = mkdtemp(name);
    std::filesystem::create_directory(install_ + "/datum");
    setenv("TWI_BATHYX", install_.c_str(), 1);
    std::ofstream(install_ + "/datum/grid.dat", std::ios::binary) << Grid{}.Bytes();
    Grid two;
    two.nz = 2;
    std::ofstream(install_ + "/datum/two.dat", std::ios::binary) << two.Bytes();
    std::ofstream(install_ + "/datum/short.dat", std::ios::binary) << "short";
    two.south = -91;
    std::ofstream(install_ + "/datum/range.dat", std::ios::binary) << two.Bytes();
  }
  static void TearDownTestSuite() { std::filesystem::remove_all(install_); }

  Object Open(const std::string& keys, const char* section = nullptr) const {
    return Object(CreateFileGeodesy(Write("file.ini", "[Geodesy]\n" + keys).c_str(), section));
  }
  Object Opened(const std::string& keys) const {
    Object object = Open(keys);
    EXPECT_TRUE(object);
    EXPECT_EQ(GetGeodesyError(), 0);
    return object;
  }
  GeodesyParams Params(const std::string& keys) const {
    GeodesyParams params{};
    GetGeodesyParams(Opened(keys).get(), &params, nullptr, nullptr);
    return params;
  }

  static inline std::string install_;
};

TEST_F(ConfigTest, EveryNumberReachesItsFieldInItsUnit) {
  const GeodesyParams params = Params(
      "Projection=Lambert\nSemiMajorAxis=6378206.4\nFlattening=294.5\nScaleFactor=0.5\nRefLatitude=45\n"
      "CentralMeridian=-90\nNorthParallel=30\nSouthParallel=60\nSkewAzimuth=10\nUnit=0.3048\nFalseEasting=11\n"
      "FalseNorthing=-12.5\n");
  EXPECT_EQ(params.Kind, LambertKind);
  EXPECT_EQ(params.SemiMajorAxis, 6378206.4);
  EXPECT_EQ(params.InvFlattening, 1 / (1 / 294.5));
  EXPECT_EQ(params.ScaleFactor, 0.5);
  EXPECT_EQ(params.RefLatitude, 45 * 0.017453292519943295);
  EXPECT_EQ(params.CentralMeridian, -90 * 0.017453292519943295);
  EXPECT_EQ(params.NorthParallel, 30 * 0.017453292519943295);
  EXPECT_EQ(params.SouthParallel, 60 * 0.017453292519943295);
  EXPECT_EQ(params.SkewAzimuth, 10 * 0.017453292519943295);
  EXPECT_EQ(params.Unit, 0.3048);
  EXPECT_EQ(params.FalseEasting, 11);
  EXPECT_EQ(params.FalseNorthing, -12.5);
}

TEST_F(ConfigTest, ZerosAndMissingKeysHaveTheirMeaning) {
  const std::string plain = "Projection=UTM\nSemiMajorAxis=6378137\nFlattening=298\n";
  for (const std::string& keys :
       {plain, plain + "ScaleFactor=0\nUnit=0\nAdjustScale=0\nVertUnit=0\nDynDatum=\nGeoid=\n"}) {
    const Object object = Opened(keys);
    GeodesyParams params{};
    GetGeodesyParams(object.get(), &params, nullptr, nullptr);
    EXPECT_EQ(params.ScaleFactor, 1);
    EXPECT_EQ(params.Unit, 1);
    EXPECT_EQ(params.CentralMeridian, 0);
    Adjustment adjustment{};
    GetAdjustment(object.get(), &adjustment);
    EXPECT_EQ(adjustment.AdjustScale, 1);
    EXPECT_EQ(adjustment.AdjustType, 0u);
    EllDiff diff{};
    GetEllDiff(object.get(), &diff);
    EXPECT_EQ(diff.DeltaScale, 1);
  }
}

TEST_F(ConfigTest, ProjectionKeywordsIgnoreCapitalsAndCountWhole) {
  struct Case {
    const char* keyword;
    std::int32_t kind;
  };
  for (const auto& [keyword, kind] :
       {Case{"utm", 3}, Case{"TransMerc", 3}, Case{"TME", 3}, Case{"lc1", 1}, Case{"LCC", 1}, Case{"lambert", 1},
        Case{"Mercator", 2}, Case{"mer", 2}, Case{"SMerc", 9}, Case{"CME", 9}, Case{"Hotine", 0}, Case{"UT", 0},
        Case{"UTMX", 0}, Case{"3", 0}, Case{"", 0}}) {
    const Object object =
        Open("SemiMajorAxis=6378137\nFlattening=298\nNorthParallel=45\nProjection=" + std::string(keyword) + "\n");
    GeodesyParams params{};
    if (object) {
      GetGeodesyParams(object.get(), &params, nullptr, nullptr);
    } else {
      EXPECT_EQ(GetGeodesyError(), 5);
    }
    EXPECT_EQ(params.Kind, kind) << keyword;
  }
}

TEST_F(ConfigTest, WhatCannotBeMadeIsRefusedWithItsCode) {
  struct Case {
    const char* what;
    std::string keys;
    std::int32_t code;
    Lines log;
  };
  const Case cases[] = {
      {"no projection", "SemiMajorAxis=6378137\n", 5, {}},
      {"no flattening", "Projection=UTM\n", 3, {}},
      {"no usable cone", "Projection=LCC\nSemiMajorAxis=6378137\nFlattening=298\n", 7, {}},
      {"no grid file", std::string(Utm) + "DynDatum=nothing.dat\n", 1, {"Log --- Error 1"}},
      {"grid out of range", std::string(Utm) + "DynDatum=range.dat\n", 2, {"Log --- Error 2"}},
      {"short grid", std::string(Utm) + "DynDatum=short.dat\n", 3, {"Log --- Error 3"}},
      {"long grid name", std::string(Utm) + "DynDatum=" + std::string(240, 'x') + "\n", 1, {"Log --- Error 1"}},
  };
  const Object other = Make(Utm31());
  for (const auto& [what, keys, code, log] : cases) {
    EXPECT_FALSE(Open(keys)) << what;
    EXPECT_EQ(GetGeodesyError(), code) << what;
    EXPECT_EQ(Log(), log) << what;
  }
  EXPECT_EQ(CreateFileGeodesy(Path("nothing.ini").c_str(), nullptr), nullptr);
  EXPECT_EQ(GetGeodesyError(), 5);
  EXPECT_FALSE(Open(Utm, "Elsewhere"));
  EXPECT_EQ(GetGeodesyError(), 5);
}

TEST_F(ConfigTest, SevenValuesComeInMetresPartsPerMillionAndSeconds) {
  const Object object =
      Opened(std::string(Utm) + "DeltaX=1.5\nDeltaY=-2\nDeltaZ=3\nDeltaScale=1\nDeltaRX=3600\nDeltaRY=-1\nDeltaRZ=2\n");
  EllDiff diff{};
  GetEllDiff(object.get(), &diff);
  const EllDiff expected = {1.5, -2, 3, 1.000001, 3600 * Pi / 648000, -1 * Pi / 648000, 2 * Pi / 648000};
  EXPECT_EQ(std::memcmp(&diff, &expected, sizeof diff), 0);
  double latitude = 0.5;
  double longitude = 0.5;
  WGS84Conv(object.get(), &latitude, &longitude, nullptr);
  EXPECT_NE(latitude, 0.5);
}

TEST_F(ConfigTest, ADatumGridTakesThePlaceOfTheSevenValuesAndLiesInTheDatumFolder) {
  for (const char* name : {"two.dat", "c:\\elsewhere\\two.dat", "..\\two.dat"}) {
    const Object object = Opened(std::string(Utm) + "DeltaX=5\nDynDatum=" + name + "\n");
    EllDiff diff{};
    GetEllDiff(object.get(), &diff);
    EXPECT_EQ(diff.DeltaScale, -1);
    EXPECT_EQ(diff.DeltaX, 0);
    char path[256] = "";
    GetEllModel(object.get(), path, sizeof path);
    EXPECT_EQ(path, install_ + "\\datum\\two.dat");
  }
  EXPECT_FALSE(Open(std::string(Utm) + "DynDatum=datum/two.dat\n")) << "a slash is an ordinary character of a name";
}

TEST_F(ConfigTest, TheInstallDirectoryIsFoundOnce) {
  ASSERT_TRUE(Opened(std::string(Utm) + "Geoid=grid.dat\n"));
  setenv("TWI_BATHYX", "/nowhere", 1);
  EXPECT_TRUE(Opened(std::string(Utm) + "Geoid=grid.dat\n"));
  setenv("TWI_BATHYX", install_.c_str(), 1);
}

TEST_F(ConfigTest, TheAdjustmentTakesItsFlagsOnTopOfTheType) {
  struct Case {
    const char* keys;
    std::uint32_t type;
  };
  for (const auto& [keys, type] :
       {Case{"AdjustType=1\nReverseX=on\n", 0x10001}, Case{"AdjustType=1\nReverseY=YES\n", 0x20001},
        Case{"ReverseX=True\nReverseY=1x\n", 0x30000}, Case{"AdjustType=1\nReverseX=2\nReverseY=off\n", 1},
        Case{"AdjustType=65537\nReverseX=no\n", 0x10001}, Case{"AdjustType=7 and more\n", 7}}) {
    Adjustment adjustment{};
    GetAdjustment(Opened(std::string(Utm) + keys).get(), &adjustment);
    EXPECT_EQ(adjustment.AdjustType, type) << keys;
  }
  const Object object =
      Opened(std::string(Utm) +
             "AdjustType=1\nAdjustRotation=30\nAdjustScale=2\nAdjustX=10\nAdjustY=20\nAdjustOrigX=1000\n"
             "AdjustOrigY=2000\nReverseX=on\n");
  const Adjustment expected = {0x10001, 1000, 2000, 30 * Pi / 180, 2, 10, 20};
  Adjustment found{};
  GetAdjustment(object.get(), &found);
  EXPECT_EQ(std::memcmp(&found, &expected, sizeof found), 0);
  char word[20];
  GetLocalName(object.get(), 7, "", word, sizeof word);
  EXPECT_STREQ(word, "westing");
}

TEST_F(ConfigTest, AGeoidThatCannotBeLoadedLeavesAnObjectAndCodeNine) {
  const Object good = Opened(std::string(Utm) + "Geoid=grid.dat\nOrthoHCorr=2.5\n");
  double value = 0;
  EXPECT_EQ(Undulation(good.get(), Rad(50.25), Rad(10.25), &value), 1);
  EXPECT_NEAR(value, 112.5, 1e-9);
  for (const auto& [name, first] : {std::pair{"nothing.dat", "1"}, {"short.dat", "3"}, {"two.dat", "2"}}) {
    const Object object = Open(std::string(Utm) + "Geoid=" + name + "\nOrthoHCorr=2.5\n");
    ASSERT_TRUE(object);
    EXPECT_EQ(GetGeodesyError(), 9);
    EXPECT_EQ(Log(), (Lines{std::string("Log --- Error ") + first, "Log --- Error 9"}));
    EXPECT_EQ(Undulation(object.get(), Rad(50.25), Rad(10.25), &value), 1);
    EXPECT_EQ(value, 0);
    EXPECT_EQ(GeoXY(object.get(), &value, &value, 0.9, 0.1), 1);
  }
}

TEST_F(ConfigTest, VerticalUnitsHaveNamesOfTheirOwn) {
  for (const auto& [keys, horizontal, vertical] : {std::tuple{"Unit=1\nVertUnit=0.3048\n", "meter", "foot (int.)"},
                                                   {"Unit=0.3048\n", "foot (int.)", "foot (int.)"}}) {
    const Object object = Opened(std::string(Utm) + keys);
    char name[20];
    GetLocalName(object.get(), 1, "", name, sizeof name);
    EXPECT_STREQ(name, horizontal);
    GetLocalName(object.get(), 4, "", name, sizeof name);
    EXPECT_STREQ(name, vertical);
    double length = 100;
    VConvert(object.get(), &length, 1);
    EXPECT_NEAR(length, 30.48, 1e-13);
  }
}

TEST_F(ConfigTest, NumbersDoNotChangeWithTheLocaleOfTheHost) {
  ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr) << "scripts/install-deps makes this locale";
  ASSERT_STREQ(std::localeconv()->decimal_point, ",");
  const GeodesyParams params = Params(std::string(Utm) + "RefLatitude=1.5\nFalseNorthing=2,5\n");
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(params.ScaleFactor, 0.9996);
  EXPECT_EQ(params.RefLatitude, 1.5 * 0.017453292519943295);
  EXPECT_EQ(params.FalseNorthing, 2) << "a comma ends a number";
}

}  // namespace
