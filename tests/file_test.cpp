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
    ASSERT_EQ(object.SetGeoid((folder + "g").c_str(), 2) + object.SetEllModel((folder + "d").c_str()), 0) << length;
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
