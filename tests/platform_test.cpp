// The platform layer.
#include "platform/platform.h"

#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <thread>

#include "frame/install_dir.h"
#include "platform/files.h"
#include "support.h"

namespace {

#if defined(_WIN32)
constexpr const char* Device = "NUL";
#else
constexpr const char* Device = "/dev/zero";
#endif

class PlatformTest : public support::Scratch {};

#if !defined(_WIN32)  // where these are the system's own
TEST_F(PlatformTest, SlotsStartAtNullInEveryThread) {
  const DWORD slot = TlsAlloc();
  int mine = 0;
  EXPECT_EQ(TlsGetValue(slot), nullptr);
  EXPECT_TRUE(TlsSetValue(slot, &mine));
  std::thread([slot] { EXPECT_EQ(TlsGetValue(slot), nullptr); }).join();
  EXPECT_EQ(TlsGetValue(slot), &mine);
  EXPECT_NE(TlsAlloc(), slot);
  EXPECT_FALSE(TlsSetValue(8, &mine)) << "there are eight slots";
  EXPECT_EQ(TlsGetValue(8), nullptr);
}

TEST_F(PlatformTest, TheHostProgramHasAPathWithBackslashes) {
  char path[4096] = "";
  const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
  EXPECT_EQ(length, std::strlen(path));
  EXPECT_STREQ(std::strrchr(path, '\\'), "\\latigo_core_tests");
  EXPECT_EQ(std::strchr(path, '/'), nullptr);
  EXPECT_EQ(GetModuleFileNameA(nullptr, path, 5), 4u);
  EXPECT_EQ(path[4], '\0');
  EXPECT_EQ(GetModuleFileNameA(nullptr, path, 0) + static_cast<DWORD>(LoadStringA(nullptr, 1, path, 0)), 0u);
  EXPECT_EQ(path[0], '\\') << "a buffer of no size is left alone";
}

TEST_F(PlatformTest, PathsOfGridFilesHaveRoomFor255Characters) {
  char path[4096];
  GetModuleFileNameA(nullptr, path, sizeof path);
  *std::strrchr(path, '\\') = '\0';
  EXPECT_STREQ(latigo::GetInstallDir(nullptr), path) << "the directory of the host program";
  char grid[256];
  const std::size_t room = 255 - std::strlen(latigo::GetInstallDir(nullptr)) - std::strlen("\\datum\\");
  EXPECT_TRUE(latigo::GridFilePath(std::string(room, 'x').c_str(), grid));
  EXPECT_EQ(std::strlen(grid), 255);
  EXPECT_FALSE(latigo::GridFilePath(std::string(room + 1, 'x').c_str(), grid));
  EXPECT_STREQ(grid, "");
  EXPECT_FALSE(latigo::GridFilePath("..\\../datum/file", grid)) << "grid files lie in one folder";
  EXPECT_STREQ(grid, "");
  EXPECT_TRUE(latigo::GridFilePath("elsewhere/..\\file", grid)) << "only what follows the last backslash counts";
}
#endif

#if !defined(_WIN32)
TEST_F(PlatformTest, ATerminalThatIsNamedAsAFileDoesNotBecomeThatOfTheProcess) {
  const int other = posix_openpt(O_RDWR | O_NOCTTY);
  if (other < 0 || grantpt(other) != 0 || unlockpt(other) != 0) { GTEST_SKIP() << "no terminals"; }
  const std::string path = ptsname(other);
  const pid_t child = fork();
  if (child == 0) {
    setsid();  // a process without a terminal, which takes the first that it opens
    _exit(latigo::InputFile().Open(path.c_str()) || open("/dev/tty", O_RDWR) >= 0 ? 1 : 0);
  }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status, 0);
  close(other);
}
#endif

TEST_F(PlatformTest, BackslashesAreReadAsSlashesAndOnlyRegularFilesOpen) {
  std::filesystem::create_directory(Path("folder"));
  Write("folder/file", "bytes");
  latigo::InputFile file;
  ASSERT_TRUE(file.Open((Path("folder") + "\\file").c_str()));
  char bytes[] = "......";
  EXPECT_TRUE(file.ReadAt(2, bytes, 3));
  EXPECT_STREQ(bytes, "tes...");
  EXPECT_FALSE(file.ReadAt(2, bytes, 4)) << "beyond the end";
  for (const std::string& none : {Path("folder"), Path("nothing"), std::string(Device), std::string(5000, 'x')}) {
    EXPECT_FALSE(file.Open(none.c_str()));
    EXPECT_FALSE(file.ReadAt(0, bytes, 1)) << "the file before is closed";
  }
}

}  // namespace
