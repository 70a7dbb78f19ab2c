#include "support.h"

#if !defined(_WIN32)
#include <dlfcn.h>
#include <unistd.h>
#endif

namespace {

#if defined(_WIN32)
void* Load() { return LoadLibraryA(LATIGO_LIBRARY); }
#else
void* Load() { return dlopen(LATIGO_LIBRARY, RTLD_NOW | RTLD_LOCAL); }
#endif

class LoadTest : public support::Scratch {};

TEST_F(LoadTest, LoadingWritesOneLine) {
  void* const library = Load();
  ASSERT_NE(library, nullptr);
  const std::string version = std::to_string(LATIGO_VERSION_MAJOR) + "." + std::to_string(LATIGO_VERSION_MINOR);
  EXPECT_EQ(Log(), support::Lines{"LATIGO ver " + version + " loaded"});
#if !defined(_WIN32)
  ASSERT_EQ(dlclose(library), 0);
  EXPECT_NE(dlopen(LATIGO_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "it stays, for threads inside it";
#endif
}

#if !defined(_WIN32)
TEST(LoadDeathTest, AFailedCallAtTheHostsExitIsACode) {
  const auto host = [] {
    std::atexit([] {
      void* const library = Load();
      const auto create = reinterpret_cast<decltype(&CreateGeodesy)>(dlsym(library, "CreateGeodesy"));
      const auto convert = reinterpret_cast<decltype(&GeoXY)>(dlsym(library, "GeoXY"));
      const auto destroy = reinterpret_cast<decltype(&DestroyGeodesy)>(dlsym(library, "DestroyGeodesy"));
      const auto error = reinterpret_cast<decltype(&GetGeodesyError)>(dlsym(library, "GetGeodesyError"));
      const GeodesyParams params = support::Utm31();
      double x = 0, y = 0;
      GeodesyHandle const grid = create(&params);
      const int code = convert(grid, &x, &y, support::HalfPi, 0) + error();
      destroy(grid);
      _exit(code);
    });
    std::exit(Load() == nullptr);  // loaded last, so its destructors run first
  };
  EXPECT_EXIT(host(), testing::ExitedWithCode(6), "");
}
#endif

#if defined(_WIN32)
TEST_F(LoadTest, TheVersionResourceHasTheVersion) {
  char block[4096];
  void* fixed = nullptr;
  UINT size = 0;
  ASSERT_TRUE(GetFileVersionInfoA(LATIGO_LIBRARY, 0, sizeof block, block) &&
              VerQueryValueA(block, "\\", &fixed, &size));
  EXPECT_EQ(static_cast<const VS_FIXEDFILEINFO*>(fixed)->dwFileVersionMS, 13u << 16 | 2u);
  EXPECT_EQ(static_cast<const VS_FIXEDFILEINFO*>(fixed)->dwProductVersionMS, 13u << 16 | 2u);
}
#endif

}  // namespace
