// The layer over the operating system.
#include "platform/platform.h"

#include <thread>

#include "platform/files.h"
#include "support.h"

namespace {

class PlatformTest : public support::Scratch {};

TEST_F(PlatformTest, SlotsStartAtNothingInEveryThread) {
  const DWORD slot = TlsAlloc();
  int mine = 0;
  EXPECT_EQ(TlsGetValue(slot), nullptr);
  EXPECT_TRUE(TlsSetValue(slot, &mine));
  std::thread([slot] { EXPECT_EQ(TlsGetValue(slot), nullptr); }).join();
  EXPECT_EQ(TlsGetValue(slot), &mine);
  EXPECT_NE(TlsAlloc(), slot);
  EXPECT_FALSE(TlsSetValue(1000, &mine));
  EXPECT_EQ(TlsGetValue(1000), nullptr);
}

TEST_F(PlatformTest, BackslashesAreSlashesAndOnlyRegularFilesOpen) {
  std::filesystem::create_directory(Path("folder"));
  Write("folder/file", "bytes");
  std::FILE* file = latigo::OpenForReading((Path("folder") + "\\file").c_str());
  ASSERT_NE(file, nullptr);
  EXPECT_TRUE(latigo::SeekTo(file, 2));
  EXPECT_EQ(std::fgetc(file), 't');
  std::fclose(file);
  for (const std::string& none : {Path("folder"), Path("nothing"), std::string("/dev/zero"), std::string(5000, 'x')}) {
    EXPECT_EQ(latigo::OpenForReading(none.c_str()), nullptr);
  }
}

TEST_F(PlatformTest, TheHostProgramHasAPathWithBackslashes) {
  char path[4096] = "";
  const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
  EXPECT_EQ(length, std::strlen(path));
  EXPECT_STREQ(std::strrchr(path, '\\'), "\\latigo_core_tests");
  EXPECT_EQ(std::strchr(path, '/'), nullptr);
  EXPECT_EQ(GetModuleFileNameA(nullptr, path, 5), 4u);
  EXPECT_EQ(path[4], '\0');
}

}  // namespace
