// Objects from files, where tables do not suffice: the host's locale, and paths copied to buffers.
#include <clocale>
#include <latigo/latigo.hpp>

#include "support.h"

namespace {

using namespace support;

class FileTest : public Scratch {};

TEST_F(FileTest, NumbersDoNotChangeWithTheLocaleOfTheHost) {
  ASSERT_NE(std::setlocale(LC_ALL, GermanLocale), nullptr) << "scripts/install-deps makes this locale";
  ASSERT_STREQ(std::localeconv()->decimal_point, ",");
  const std::string file = Write("file.ini",
                                 "[Geodesy]\nProjection=UTM\nSemiMajorAxis=6378137\nFlattening=298.257223563\n"
                                 "ScaleFactor=0.9996\nFalseNorthing=2,5\n");
  GeodesyParams params{};
  GetGeodesyParams(Object(CreateFileGeodesy(file.c_str(), nullptr)).get(), &params, nullptr, nullptr);
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(double{params.ScaleFactor}, 0.9996);
  EXPECT_EQ(double{params.FalseNorthing}, 2) << "a comma ends a number";
  EXPECT_EQ(CreateFileGeodesy(Path("nothing.ini").c_str(), nullptr), nullptr);
  EXPECT_EQ(GetGeodesyError(), 5);
}

TEST_F(FileTest, PathsAreCopiedUpToTheBufferOrOneByteLess) {
  const std::string datum = Write("datum", Grid{.nz = 2}.Bytes());
  const std::string geoid = Write("geoid", Grid{}.Bytes());
  const Object object = Make(Utm31());
  ASSERT_EQ(SetEllModel(object.get(), datum.c_str()) + SetGeoid(object.get(), geoid.c_str(), 0), 2);
  const auto size = static_cast<std::int32_t>(datum.size());
  std::string text(datum.size() + 4, '#');
  EXPECT_EQ(GetEllModel(object.get(), text.data(), size), 1);
  EXPECT_EQ(text, datum.substr(0, datum.size() - 1) + "#####") << "no terminator, and the last byte is not touched";
  EXPECT_EQ(GetEllModel(object.get(), text.data(), size + 4), 1);
  EXPECT_EQ(text, datum + std::string(3, '\0') + "#") << "filled up with zeros";
  text.assign(text.size(), '#');
  EXPECT_EQ(GetGeoid(object.get(), text.data(), size, nullptr), 1);
  EXPECT_EQ(text, geoid + "####") << "no terminator, and nothing beyond the size";
  EXPECT_EQ(GetGeoid(object.get(), text.data(), size + 3, nullptr), 1);
  EXPECT_EQ(text, geoid + std::string(3, '\0') + "#");
}

// The doubles of results that succeeded, one after another.
std::vector<double> Numbers(const auto&... results) {
  std::vector<double> numbers;
  const auto add = [&](const auto& result) {
    EXPECT_TRUE(result) << result.function << ": " << result.Text();
    numbers.resize(numbers.size() + sizeof result.value / 8);
    std::memcpy(numbers.data() + numbers.size() - sizeof result.value / 8, &result.value, sizeof result.value);
  };
  (add(results), ...);
  return numbers;
}

TEST_F(FileTest, EveryCallOfTheClassReturnsWhatItsExportWrites) {
  namespace api = latigo::api;
  GeodesyParams params = Utm31();
  params.Unit = 0.3048;
  api::Geodesy o = *api::Geodesy::CreateGeodesy(params);
  const GeodesyHandle h = o.Handle();
  const auto [phi, lambda] = api::Position::FromDegrees(50.25, 4);
  const auto place = api::Place::FromDegrees(50.25, 4, 100);
  const EllDiff shift = {10, 20, 30, 1.000001, 1e-6, 2e-6, 3e-6};
  const Adjustment turned = {LATIGO_ADJUST_SIMILARITY | LATIGO_REVERSE_X, 1, 2, 0.1, 1.5, 3, 4};
  const std::string grid = Write("g", Grid{.nz = 1, .west = 1}.Bytes());
  EXPECT_TRUE(o.SetEllDiff(shift) && o.SetAdjustment(turned) && o.SetGeoid(grid.c_str(), 2));
  EXPECT_NEAR(lambda, Rad(4), 1e-15);
  EXPECT_NEAR(api::ToDegrees(phi), 50.25, 1e-13);
  double d[28];
  for (double* to : {d + 5, d + 8, d + 11, d + 14}) { std::memcpy(to, &place, sizeof place); }
  GeoXY(h, d, d + 1, phi, lambda), XYGeo(h, 7e5, 8e5, d + 2, d + 3), d[4] = Scale(h, 7e5, 8e5);
  EllConv(h, d + 5, d + 6, d + 7, 6378206.4, 0.0034), InvEllConv(h, d + 8, d + 9, d + 10, 6378206.4, 0.0034);
  WGS84Conv(h, d + 11, d + 12, d + 13), InvWGS84Conv(h, d + 14, d + 15, d + 16);
  GeoECEF(h, d + 17, d + 18, d + 19, phi, lambda, 100), ECEFGeo(h, 4e6, 3e5, 4.9e6, d + 20, d + 21, d + 22);
  d[23] = GCircLL(h, phi, lambda, 0.9, 0.1, d + 24), d[25] = RLineLL(h, phi, lambda, 0.9, 0.1, d + 26);
  Undulation(h, phi, lambda, d + 27);
  EXPECT_EQ(
      Numbers(o.GeoXY({phi, lambda}), o.XYGeo({7e5, 8e5}), o.Scale({7e5, 8e5}), o.EllConv(place, {6378206.4, 0.0034}),
              o.InvEllConv(place, {6378206.4, 0.0034}), o.WGS84Conv(place), o.InvWGS84Conv(place), o.GeoECEF(place),
              o.ECEFGeo({4e6, 3e5, 4.9e6}), o.GCircLL({phi, lambda}, {0.9, 0.1}), o.RLineLL({phi, lambda}, {0.9, 0.1}),
              o.Undulation({phi, lambda})),
      std::vector<double>(d, d + 28));
  EXPECT_EQ(Numbers(o.Metres(10), o.GridUnits(0.3048), o.VerticalMetres(10), o.VerticalUnits(0.3048)),
            (std::vector<double>{10 * 0.3048, 1, 10 * 0.3048, 1}));
  const auto diff = o.GetEllDiff();
  const auto adjustment = o.GetAdjustment();
  EXPECT_EQ(std::memcmp(&diff.value, &shift, sizeof shift) | std::memcmp(&adjustment.value, &turned, sizeof turned), 0);
  EXPECT_EQ(o.GetGeodesyParams()->Kind, LATIGO_KIND_TRANSVERSE_MERCATOR);
  EXPECT_EQ(*o.EllipsoidName() + *o.ProjectionCode() + *o.GetLocalName(LATIGO_NAME_UNIT_SHORT, "fra"), "WGS-84TMEft");
  EXPECT_EQ(api::GetGeodesyVersion(), LATIGO_VERSION);

  const api::Place places[] = {place, {0.9, 0.1, 0}};
  std::array<api::Place, 2> there{};
  std::vector<api::Place> back(2);
  EXPECT_TRUE(o.WGS84Conv(places, there) && o.InvWGS84Conv(there, back));
  EXPECT_NEAR(back[0].latitude, place.latitude, 1e-9);
  std::vector<api::Position> one(1);
  const api::Grid grids[] = {*o.GeoXY({phi, lambda}), {NaN, NaN}};
  EXPECT_TRUE(o.XYGeo(grids, one)) << "as many as the shorter one holds";
  EXPECT_NEAR(one[0].longitude, lambda, 1e-9);

  EXPECT_STREQ(o.SetAdjustment({LATIGO_ADJUST_NONE, 0, 0, 0, 0, 0, 0}).Text(), "the scale of the adjustment is 0");
  EXPECT_STREQ(o.SetEllModel("short").Text(), "the datum grid file cannot be opened");
  EXPECT_STREQ(api::Geodesy::CreateGeodesy({}).Text(), "the reciprocal flattening is missing or 0");
  EXPECT_STREQ(LatigoErrorText(99, "SetEllModel"), "unknown code");
  const api::Geodesy taken(o.Release());
  EXPECT_TRUE(taken && !o && o.SetEllModel(nullptr).code == LATIGO_ERROR_NULL_HANDLE);
}

#if !defined(_WIN32)  // where no path is as long
TEST_F(FileTest, TheClassCopiesPathsOfAnyLengthCompletely) {
  Write("g", Grid{.nz = 1}.Bytes());
  Write("d", Grid{.nz = 2}.Bytes());
  namespace api = latigo::api;
  api::Geodesy object = *api::Geodesy::CreateGeodesy(Utm31());
  for (const std::size_t length :
       {200U, 509U, 510U, 511U, 512U, 513U, 816U, 1021U, 1022U, 1023U, 1024U, 1025U, 4000U}) {
    std::string folder = Path("");
    while (folder.size() + 1 < length) { folder += folder.size() + 3 < length && folder.ends_with('/') ? "./" : "/"; }
    ASSERT_TRUE(object.SetGeoid((folder + "g").c_str(), 2) && object.SetEllModel((folder + "d").c_str())) << length;
    EXPECT_EQ(object.GetGeoid()->fileName, folder + "g");
    EXPECT_EQ(object.GetEllModel().value, folder + "d");
    EXPECT_EQ(object.GetGeoid()->orthoHCorr, 2);
  }
  EXPECT_EQ(api::Geodesy().GetEllModel().code, 2);
}
#endif

#if !defined(_WIN32)
TEST_F(FileTest, GridFilesAreOpenedInTheDatumFolderOnly) {
  std::ofstream(InstallDirectory() + "/outside", std::ios::binary) << Grid{.nz = 2}.Bytes();
  for (const auto& [key, code] : {std::pair{"DynDatum", 1}, {"Geoid", 9}}) {
    const std::string text = "[Geodesy]\nProjection=UTM\nSemiMajorAxis=6378137\nFlattening=298\n" + std::string(key);
    const Object object(CreateFileGeodesy(Write("file.ini", text + "=../outside\n").c_str(), nullptr));
    EXPECT_EQ(GetGeodesyError(), code);
    EXPECT_EQ(object != nullptr, code == 9);
    EXPECT_EQ(Log().at(0), "Log --- Error 1") << "as a file that cannot be opened";
  }
}
#endif

}  // namespace
