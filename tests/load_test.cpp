#include <dlfcn.h>

#include "support.h"

namespace {

class LoadTest : public support::Scratch {};

TEST_F(LoadTest, LoadingWritesOneLine) {
  void* library = dlopen(LATIGO_LIBRARY, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  EXPECT_EQ(Log(), support::Lines{"LATIGO ver 13.2 loaded"});
  const auto version = reinterpret_cast<std::int32_t (*)()>(dlsym(library, "GetGeodesyVersion"));
  EXPECT_EQ(version(), 1302);
  dlclose(library);
}

}  // namespace
