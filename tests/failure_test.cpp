// Converting a point allocates nothing. Exhausted memory and files that cannot be read are codes, not exceptions. The
// functions below replace those of the whole process, including the library.
#include <atomic>
#include <cstdio>
#include <new>

#include "support.h"

#if defined(_WIN32)
#include "errors/last_error.h"
#else
#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <thread>
#endif

namespace {

std::atomic<long> Allocations = 0;
std::atomic<long> FailAt = -1;  // the allocation that fails, counted from 0; -1 for none

void* Allocate(std::size_t size) {
  if (Allocations++ == FailAt) { return nullptr; }
  return std::malloc(size == 0 ? 1 : size);
}

std::atomic<long> Operations = 0;        // reads of grid files
std::atomic<long> FailOperationAt = -1;  // likewise
std::atomic<std::size_t> BytesRead = 0;
std::atomic<bool> Interrupted = false;  // every other read is interrupted, the rest return at most seven bytes

bool OperationFails() { return Operations++ == FailOperationAt; }

}  // namespace

#if defined(_WIN32)
// The linker redirects the library's calls. The library is part of this program, so its load function does not run.
#if defined(__i386__)
#pragma GCC diagnostic ignored "-Wattributes"  // a member function's calling convention for another function
#define MEMBER __attribute__((thiscall))
#else
#define MEMBER
#endif
extern "C" {
bool MEMBER __real__ZNK6latigo9InputFile6ReadAtExPvj(const void* file, std::int64_t position, void* to, unsigned size);
bool MEMBER __wrap__ZNK6latigo9InputFile6ReadAtExPvj(const void* file, std::int64_t position, void* to, unsigned size) {
  BytesRead += size;
  return !OperationFails() && __real__ZNK6latigo9InputFile6ReadAtExPvj(file, position, to, size);
}
}
const bool Loaded = (latigo::AllocateLastError(), true);
#else
extern "C" [[gnu::visibility("default")]] ssize_t pread(int file, void* to, std::size_t size, off_t position) {
  static const auto real = reinterpret_cast<decltype(&pread)>(dlsym(RTLD_NEXT, "pread"));
  const bool interrupted = Interrupted && Operations % 2 == 0;
  BytesRead += size;
  if (const bool fails = OperationFails(); fails || interrupted) { return errno = fails ? EIO : EINTR, -1; }
  return real(file, to, Interrupted ? std::min<std::size_t>(size, 7) : size, position);
}
#endif

[[gnu::noinline]] void* operator new(std::size_t size) {
  if (void* block = Allocate(size)) { return block; }
  throw std::bad_alloc();
}
[[gnu::noinline]] void* operator new[](std::size_t size) { return operator new(size); }
[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete[](void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete[](void* block, std::size_t) noexcept { std::free(block); }

namespace {

using namespace support;

class FailureTest : public Scratch {
 protected:
  // Lets each allocation of the call fail in turn, until the call succeeds without a failure.
  static void FailEachIn(const std::function<bool()>& call) {
    bool done = false;
    for (long i = 0; !done; ++i) {
      ASSERT_LT(i, 1000);
      Allocations = 0;
      FailAt = i;
      const bool success = call();
      const std::int32_t code = GetGeodesyError();
      done = Allocations <= i;
      FailAt = -1;
      EXPECT_EQ(success, done) << "allocation " << i;
      EXPECT_EQ(code, done ? 0 : 1) << "allocation " << i;
    }
  }
};

TEST_F(FailureTest, ConvertingAPointAllocatesNothing) {
  const std::string datum = Write("datum", Grid{.nz = 2}.Bytes());
  const std::string geoid = Write("geoid", Grid{}.Bytes());
  for (const std::string& system : Systems()) {
    const Object object = Open(system);
    const Adjustment adjustment = {1, 1, 2, 3, 4, 5, 6};
    ASSERT_EQ(SetEllModel(object.get(), datum.c_str()) + SetGeoid(object.get(), geoid.c_str(), 0) +
                  SetAdjustment(object.get(), &adjustment),
              3);
    Allocations = 0;
    int successes = 0;
    for (int i = 0; i < 100; ++i) {
      double p[] = {Rad(50 + i * 0.004), Rad(10 + i * 0.004), 10};
      double x[3];
      char name[20];
      successes += Undulation(object.get(), p[0], p[1], &x[2]) + WGS84Conv(object.get(), &p[0], &p[1], &p[2]) +
                   GeoXY(object.get(), &x[0], &x[1], p[0], p[1]) + XYGeo(object.get(), x[0], x[1], &p[0], &p[1]) +
                   InvWGS84Conv(object.get(), &p[0], &p[1], &p[2]) +
                   GeoECEF(object.get(), &x[0], &x[1], &x[2], p[0], p[1], p[2]) +
                   ECEFGeo(object.get(), x[0], x[1], x[2], &p[0], &p[1], &p[2]) +
                   GetLocalName(object.get(), 7, "fra", name, sizeof name);
    }
    EXPECT_EQ(Allocations, 0);
    EXPECT_EQ(successes, 800);
  }
}

TEST_F(FailureTest, EveryFailedFileOperationIsReportedAndLeavesTheObjectUsable) {
  const std::string datum = Write("datum", Grid{.nz = 2}.Bytes());
  const std::string geoid = Write("geoid", Grid{}.Bytes());
  const double latitude = Rad(50.1), longitude = Rad(10.1);
  // Failures of reading the header, the length, and two rows; and no failure.
  const std::vector<std::array<std::int32_t, 3>> codes = {{9, 0, 0}, {0, 13, 13}, {0, 13, 0}, {0, 0, 0}};
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const Object object = Open("Clarke");
    double value = 0;
    Operations = 0;
    FailOperationAt = static_cast<long>(i);
    SetGeoid(object.get(), geoid.c_str(), 1);
    std::array<std::int32_t, 3> found = {GetGeodesyError(), 0, 0};
    Undulation(object.get(), latitude, longitude, &value);
    found[1] = GetGeodesyError();
    FailOperationAt = -1;
    EXPECT_EQ(value == 1, found[0] + found[1] != 0) << "the constant alone";
    Undulation(object.get(), latitude, longitude, &value);
    found[2] = GetGeodesyError();
    EXPECT_EQ(found, codes[i]) << i;

    Operations = 0;
    FailOperationAt = static_cast<long>(i);
    SetEllModel(object.get(), datum.c_str());
    EXPECT_EQ(GetGeodesyError(), i == 0 ? 3 : 0);
    double to[] = {latitude, longitude};
    EXPECT_EQ(WGS84Conv(object.get(), &to[0], &to[1], nullptr), 1);
    FailOperationAt = -1;
    EXPECT_EQ(std::fabs(to[1] - longitude) < 1e-12, i < 3) << "carried across unshifted, or not at all";
  }
}

TEST_F(FailureTest, TruncatedGridsAndGridsReplacedWhileOpenReturnACodeOrTheirValues) {
  const std::string whole = Grid{}.Bytes();  // four records of 96 bytes
  for (std::size_t length = 90; length <= whole.size(); ++length) {
    const std::string path = Write("cut", whole.substr(0, length));
    const Object object = Make(Utm31());
    double value = 0;
    EXPECT_EQ(SetGeoid(object.get(), path.c_str(), 1), length >= 96);
    Undulation(object.get(), Rad(50), Rad(10.25), &value);
    EXPECT_EQ(GetGeodesyError(), length < 96 || length >= 288 ? 0 : 13) << length;
    EXPECT_NEAR(value, length >= 288 ? 11 : 1, 1e-9) << length;
    Write("cut", "");  // the same file, now empty
    Undulation(object.get(), Rad(50.3), Rad(10.25), &value);
    EXPECT_EQ(GetGeodesyError(), length < 96 ? 0 : 13) << length;
    Write("cut", whole + whole);
    Undulation(object.get(), Rad(50.5), Rad(10.25), &value);
    EXPECT_NEAR(value, length >= 192 ? 211 : 1, 1e-9) << length;
  }
}

TEST_F(FailureTest, RowsInMemoryAreNotReadAgain) {
  const std::string geoid = Write("geoid", Grid{.nr = 9}.Bytes());
  // A point midway between two rows or on the last row, the records read for it, and whether that fails.
  const struct {
    double row;
    int col;
    std::size_t records;
    bool fails = false;
  } lookups[] = {{0.5, 0, 2},       {0.5, 7, 0}, {1.5, 3, 1}, {2.5, 4, 1},       {2.5, 22, 0}, {1.5, 2, 1},
                 {0.5, 9, 1},       {4.5, 5, 2}, {7.5, 0, 2}, {8, 1, 0},         {6.5, 2, 1},  {4.5, 2, 2},
                 {5.5, 3, 1, true}, {5.5, 3, 2}, {4.5, 8, 1}, {3.5, 8, 1, true}, {4.5, 8, 2},  {5.5, 3, 1},
                 {0.5, 3, 2, true}, {1.5, 3, 2}, {1.5, 0, 0}};
  for (const bool interrupted : {false, true}) {
    const Object object = Make(Utm31());
    Interrupted = interrupted;
    EXPECT_EQ(SetGeoid(object.get(), geoid.c_str(), 1), 1);
    for (const auto& [row, col, records, fails] : lookups) {
      double value = 0;
      Operations = 0, BytesRead = 0, FailOperationAt = fails ? 0 : -1;
      EXPECT_EQ(Undulation(object.get(), Rad(50 + row / 4), Rad(10 + col * 0.25), &value), fails ? 0 : 1);
      EXPECT_NEAR(value, fails ? 1 : 1 + 100 * row + 10 * col, 1e-9) << row << " " << col;
      EXPECT_TRUE(interrupted || (BytesRead == 96 * records && Operations <= 1)) << row << " " << col;
    }
    Interrupted = false;
  }
}

#if !defined(_WIN32)
TEST_F(FailureTest, AChildProcessReadsTheSameGridConcurrentlyWithItsParent) {
  const Object object = Make(Utm31());
  ASSERT_EQ(SetGeoid(object.get(), Write("geoid", Grid{.nr = 9}.Bytes()).c_str(), 0), 1);
  const pid_t child = fork();
  int wrong = 0;
  for (int i = 0; i < 5000; ++i) {
    double value = 0;
    Undulation(object.get(), Rad(50.125 + 0.5 * (i % 4)), Rad(10), &value);
    wrong += std::fabs(value - 50 - 200 * (i % 4)) > 1e-9;
  }
  if (child == 0) { _exit(wrong != 0); }
  int status = -1;
  waitpid(child, &status, 0);
  EXPECT_EQ(status + wrong, 0);
}

TEST_F(FailureTest, ACancelledThreadEndsAfterTheCallAndNotInsideIt) {
  const std::string grid = Write("grid", Grid{.nz = 2}.Bytes()), geoid = Write("geoid", Grid{}.Bytes());
  std::vector<std::int32_t> codes;
  bool survived = false;
  std::thread([&] {
    codes.reserve(9);
    pthread_cancel(pthread_self());
    double p[] = {Rad(50.1), Rad(10.1)}, x = 0, y = 0;
    const auto code = [&](auto) { codes.push_back(GetGeodesyError()); };
    Object object(CreateFileGeodesy(LATIGO_CLAIMS "/systems.ini", "Utm31"));
    code(object.get());
    code(GeoXY(object.get(), &x, &y, HalfPi, 0));
    code(SetGeoid(object.get(), "nothing", 0));
    code(SetGeoid(object.get(), geoid.c_str(), 0));
    code(SetEllModel(object.get(), grid.c_str()));
    code(Undulation(object.get(), p[0], p[1], &x));
    code(WGS84Conv(object.get(), &p[0], &p[1], nullptr));
    object.reset();
    code(0);
    pthread_testcancel();
    survived = true;
  }).join();
  EXPECT_EQ(codes, (std::vector<std::int32_t>{0, 6, 9, 0, 0, 0, 0, 0}));
  EXPECT_FALSE(survived) << "the request is not lost";
}

TEST_F(FailureTest, FilesMayHaveTheDescriptorOfStandardInput) {
  const std::string geoid = Write("geoid", Grid{}.Bytes());
  const int input = fcntl(0, F_DUPFD_CLOEXEC, 3);
  for (const std::string& path : {geoid, Write("short", "")}) {
    close(0);
    Object object = Open("Utm31");
    double value = 0;
    EXPECT_EQ(fcntl(0, F_GETFD), -1) << "the configuration file is closed";
    EXPECT_EQ(SetGeoid(object.get(), path.c_str(), 0), path == geoid ? 1 : 0);
    EXPECT_EQ(fcntl(0, F_GETFD) >= 0, path == geoid);
    EXPECT_EQ(Undulation(object.get(), Rad(50), Rad(10.25), &value), 1);
    EXPECT_EQ(value, path == geoid ? 10 : 0);
    object.reset();
    EXPECT_EQ(fcntl(0, F_GETFD), -1) << "the grid is closed";
  }
  dup2(input, 0);
  close(input);
}

TEST_F(FailureTest, AHostMayCloseAllDescriptors) {
  Object object = Make(Utm31());
  const int next = dup(0);
  close(next);
  ASSERT_EQ(SetGeoid(object.get(), Write("geoid", Grid{}.Bytes()).c_str(), 1), 1);
  ASSERT_EQ(close(next), 0) << "the grid's";
  double value = 0;
  errno = 1234;
  EXPECT_EQ(Undulation(object.get(), Rad(50), Rad(10.25), &value), 0);
  EXPECT_EQ(GetGeodesyError(), 13);
  object.reset();
  EXPECT_EQ(errno, 1234) << "errno is the host's";
}
#endif

TEST_F(FailureTest, EveryFailedAllocationIsCodeOne) {
  FailEachIn([] {
    const GeodesyParams params = Utm31();
    return Object(CreateGeodesy(&params)) != nullptr;
  });
  const std::string datum = InstallDirectory() + "/datum/failing-datum", geoid = datum + "-geoid";
  std::ofstream(datum, std::ios::binary) << Grid{.nz = 2}.Bytes();
  std::ofstream(geoid, std::ios::binary) << Grid{}.Bytes();
  const std::string plain = "[Geodesy]\nProjection=UTM\nSemiMajorAxis=6378137\nFlattening=298\n";
  for (const char* const grids : {"", "DynDatum=failing-datum\n", "Geoid=failing-datum-geoid\n"}) {
    const std::string file = Write("file.ini", plain + grids);
    FailEachIn([&] { return Object(CreateFileGeodesy(file.c_str(), nullptr)) != nullptr; });
  }
  const Object object = Make(Utm31());
  FailEachIn([&] { return SetEllModel(object.get(), datum.c_str()) == 1; });
  FailEachIn([&] { return SetGeoid(object.get(), geoid.c_str(), 1) == 1; });
  double undulation = 0;
  EXPECT_EQ(Undulation(object.get(), Rad(50), Rad(10), &undulation), 1);
}

}  // namespace
