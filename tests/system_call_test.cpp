// Configuration files, profile files and the log when system calls fail, are interrupted or transfer less than
// requested. The linker redirects the library's calls to the functions below.
#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <new>

#include "errors/last_error.h"
#include "errors/log_line.h"
#include "frame/config_reader.h"
#include "frame/profile.h"
#include "support.h"

namespace {

constexpr int Less = 0;  // a read or a write of 0 bytes
int Fault = EIO;         // or EINTR, or Less
int FailAt = -1;         // the call that fails, counted from 0; -1 for none
int Calls = 0;
int Opens = 0;
bool OneByteAtOnce = false, Traced = false;
time_t Now = 5;
std::size_t Allocated = 0;  // bytes
const bool Loaded = (latigo::AllocateLastError(), true);

// Calls of rank 0 can only fail, those of rank 1 also be interrupted, those of rank 2 also transfer less.
bool Fails(int rank) {
  if ((Fault == EINTR && rank < 1) || (Fault == Less && rank < 2) || Calls++ != FailAt) { return false; }
  errno = Fault;
  return true;
}
std::size_t Count(std::size_t count) { return OneByteAtOnce ? std::min<std::size_t>(count, 1) : count; }

}  // namespace

extern "C" {
#define WRAPPED(name, rank, parameters, ...) \
  int __real_##name parameters;              \
  int __wrap_##name parameters { return Fails(rank) ? -1 : __real_##name(__VA_ARGS__); }
WRAPPED(fstat, 0, (int file, struct stat* status), file, status)
WRAPPED(stat, 0, (const char* path, struct stat* status), path, status)
WRAPPED(fchmod, 0, (int file, mode_t mode), file, mode)
WRAPPED(fchown, 0, (int file, uid_t user, gid_t group), file, user, group)
WRAPPED(faccessat, 0, (int folder, const char* path, int mode, int flags), folder, path, mode, flags)
WRAPPED(rename, 0, (const char* from, const char* to), from, to)
WRAPPED(fsync, 1, (int file), file)
#undef WRAPPED
int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, mode_t mode) {
  Opens += !std::string_view(path).ends_with("/log");
  return Fails(1) ? -1 : __real_open(path, flags, mode);
}
int __real_close(int file);
int __wrap_close(int file) { return __real_close(file) + (Fails(0) ? -1 : 0); }
ssize_t __real_read(int file, void* buffer, std::size_t count);
ssize_t __wrap_read(int file, void* buffer, std::size_t count) {
  constexpr std::string_view Status = "Name:\tn\nTracerPid:\t7\n";
  if (Traced) { return static_cast<ssize_t>(Status.copy(static_cast<char*>(buffer), count)); }
  return Fails(2) ? (Fault == Less) - 1 : __real_read(file, buffer, Count(count));
}
ssize_t __real_write(int file, const void* buffer, std::size_t count);
ssize_t __wrap_write(int file, const void* buffer, std::size_t count) {
  return Fails(2) ? (Fault == Less) - 1 : __real_write(file, buffer, Count(count));
}
int __wrap_clock_gettime(clockid_t, timespec* time) {
  *time = {Now, 0};
  return 0;
}
}

[[gnu::noinline]] void* operator new(std::size_t size) {
  Allocated += size;
  return std::malloc(size);
}
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }

namespace latigo {
namespace {

using support::Lines;
using support::LogPath;

class SystemCallTest : public support::Scratch {
 protected:
  const std::string plain_ =
      "[Geodesy]\nProjection=UTM\nSemiMajorAxis=6378137\nFlattening=298\nFalseEasting=500000\nfalseeasting=7";

  // Lets the first, second, third... system call of an operation fail, until none is left. Returns how often the
  // operation failed.
  template <typename Call>
  static int Failures(int fault, Call call) {
    int failures = 0, free = dup(0), reached = 1;
    close(free);
    for (int i = 0; reached > 0; ++i) {
      SCOPED_TRACE("fault " + std::to_string(fault) + " at call " + std::to_string(i));
      Fault = fault;
      FailAt = i;
      Calls = 0;
      errno = 1234;
      const bool done = call();
      EXPECT_EQ(errno, 1234) << "errno is the host's";
      FailAt = -1;
      reached = Calls > i;
      failures += !done;
      EXPECT_TRUE(done || reached);
      const int next = dup(0);
      close(next);
      EXPECT_EQ(next, free) << "a descriptor stays open";
    }
    return failures;
  }

  // Runs the operation with descriptor 0 free, so that its files are opened as 0; none may remain open.
  template <typename Call>
  static bool AsDescriptor0(Call call) {
    const int input = dup(0);
    close(0);
    const bool done = call() && fcntl(0, F_GETFD) == -1;
    dup2(input, 0);
    close(input);
    return done;
  }

  static double FalseEasting(const std::string& file) {
    const std::unique_ptr<Geodesy> object(CreateFromFile(file.c_str(), nullptr));
    GeodesyParams params{};
    if (object) { object->GetParams(params); }
    return params.FalseEasting;
  }
};

TEST_F(SystemCallTest, AConfigurationFileIsReadOnceAndCompletelyOrNotAtAll) {
  const std::string file = Write("file.ini", plain_);
  const auto make = [&] {
    Opens = 0;
    const double easting = FalseEasting(file);
    const int kept = errno;
    EXPECT_EQ(easting, LastError() == 0 ? 500000 : 0);
    EXPECT_TRUE(LastError() == 0 || LastError() == 5);
    EXPECT_LE(Opens, Fault == EINTR ? 2 : 1);
    errno = kept;
    return easting != 0;
  };
  EXPECT_EQ(Failures(EIO, make), 4) << "opening, its kind, its size, reading";
  EXPECT_EQ(Failures(EINTR, make), 0);
  EXPECT_EQ(Failures(Less, make), 1);
  OneByteAtOnce = true;
  EXPECT_TRUE(make());
  OneByteAtOnce = false;
  EXPECT_TRUE(AsDescriptor0(make));
}

TEST_F(SystemCallTest, MegabytesOfShortLinesNeedNoMoreMemoryThanTheirSize) {
  std::string bytes = plain_;
  while (bytes.size() < (2 << 20) - 5) { bytes += "\na=1"; }
  const std::string file = Write("file.ini", bytes + "\n");
  Allocated = 0;
  EXPECT_EQ(FalseEasting(file), 500000);
  EXPECT_LT(Allocated, bytes.size() * 5 / 4);
}

TEST_F(SystemCallTest, AfterAnyFailureAProfileFileIsTheOldOneOrTheNewOne) {
  const std::string file = Path("file.ini"), before = "[S]\nk=1\n", after = "[S]\nk=2\n";
  Profile profile(file.c_str());
  const auto write = [&] {
    Write("file.ini", before);
    chmod(file.c_str(), 0640);
    errno = 1234;
    const bool done = profile.WriteString("k", "2", "S");
    const int kept = errno;
    std::ifstream stream(file);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    EXPECT_TRUE(bytes == after || (!done && bytes == before)) << bytes;
    EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms(0640));
    const std::filesystem::directory_iterator files(Path(""));
    EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "nothing stays beside the file";
    errno = kept;
    return done;
  };
  // open, fstat twice, read; stat, faccessat, open, fchmod, write, fsync, close, rename; fsync of the folder.
  EXPECT_EQ(Failures(EIO, write), 13);
  EXPECT_EQ(Failures(EINVAL, write), 12) << "a file system that cannot sync a folder";
  EXPECT_EQ(Failures(EINTR, write), 0);
  EXPECT_EQ(Failures(Less, write), 2);
  EXPECT_TRUE(AsDescriptor0([&] { return Profile(Path("new.ini").c_str()).WriteString("k", "v", "S"); }));
  std::filesystem::remove(Path("new.ini"));
  OneByteAtOnce = true;
  EXPECT_TRUE(write());
  OneByteAtOnce = false;
}

TEST_F(SystemCallTest, TheLogIsARegularFileNamedBeforeTheFirstLine) {
  const auto log = [] {
    errno = 1234;
    LogLine("line");
    EXPECT_EQ(errno, 1234);
  };
  log();
  EXPECT_EQ(Log(), Lines{"line"});
  const char* const path = LogPath().c_str();
  ASSERT_EQ(mkfifo(path, 0600), 0);
  log();
  const int reader = open(path, O_RDONLY | O_NONBLOCK);
  log();
  char byte;
  EXPECT_EQ(read(reader, &byte, 1), 0) << "nothing is written to a pipe";
  close(reader);
  std::filesystem::remove(path);
  std::filesystem::create_symlink(Path("elsewhere"), path);
  log();
  EXPECT_FALSE(std::filesystem::exists(Path("elsewhere")));
  std::filesystem::remove(path);
  support::SetEnvironment("LATIGO_DEBUG_OUTPUT", Path("elsewhere"));
  log();
  EXPECT_EQ(Log(), Lines{"line"});
  EXPECT_EQ(support::LogQuestions, 1);
}

TEST(LogTest, ALineBeyondTheLimitOfAFilesSizeIsDroppedAndEndsNoProcess) {
  const auto log = [](bool pending) {
    sigset_t host, after;
    sigemptyset(&host);
    if (pending) { sigaddset(&host, SIGXFSZ), pthread_sigmask(SIG_SETMASK, &host, nullptr), raise(SIGXFSZ); }
    const rlimit none = {0, 0};
    setrlimit(RLIMIT_FSIZE, &none);
    LogLine("line");
    pthread_sigmask(SIG_BLOCK, nullptr, &after);
    const bool kept = sigismember(&after, SIGXFSZ) == int{pending};
    sigpending(&after);
    _exit(kept && sigismember(&after, SIGXFSZ) == int{pending} ? 0 : 1);
  };
  EXPECT_EXIT(log(false), testing::ExitedWithCode(0), "");
  EXPECT_EXIT(log(true), testing::ExitedWithCode(0), "") << "a signal of the host's stays pending";
}

TEST(LogTest, TheDebuggerCheckRunsOncePerSecond) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";  // in a program that has not yet written a line
  const auto log = [] {
    support::LogHasFile = false;
    Opens = 0;
    for (int i = 0; i < 1000; ++i) { LogLine("unseen"); }
    Traced = true;
    LogLine("unseen");
    Now += 1;
    LogLine("seen");
    int ends[2];
    if (pipe(ends) == 0) { dup2(ends[1], STDERR_FILENO), close(ends[0]); }
    LogLine("into a pipe without a reader");
    _exit(Opens == 2 ? 0 : 1);
  };
  EXPECT_EXIT(log(), testing::ExitedWithCode(0), "^\\[[0-9a-f]+\\] seen\n$");
}

}  // namespace
}  // namespace latigo
