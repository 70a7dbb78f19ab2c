#include "support.h"

#if !defined(_WIN32)
#include <dlfcn.h>
#endif

namespace {

#if defined(_WIN32)
void* Load() { return LoadLibraryA(LATIGO_LIBRARY); }
void* Find(void* library, const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}
#else
void* Load() { return dlopen(LATIGO_LIBRARY, RTLD_NOW | RTLD_LOCAL); }
void* Find(void* library, const char* name) { return dlsym(library, name); }
#endif

class LoadTest : public support::Scratch {};

TEST_F(LoadTest, LoadingWritesOneLine) {
  void* library = Load();
  ASSERT_NE(library, nullptr);
  EXPECT_EQ(Log(), support::Lines{"LATIGO ver 13.2 loaded"});
  const auto version = reinterpret_cast<std::int32_t (*)()>(Find(library, "GetGeodesyVersion"));
  EXPECT_EQ(version(), 1302);
}

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
