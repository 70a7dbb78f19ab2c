// What the library allocates: nothing on the road of a point. And what it makes of memory that runs out and of files that
// cannot be read: a code, and no exception. The functions below are those of the whole process, the library's included.
#include <atomic>
#include <cstdio>
#include <new>

#include "support.h"

#if defined(_WIN32)
#include "frame/last_error.h"
#else
#include <dlfcn.h>
#endif

namespace {

std::atomic<long> Allocations = 0;
std::atomic<long> FailAt = -1;  // the allocation that fails, counted from 0; -1 for none

void* Allocate(std::size_t size) {
  if (Allocations++ == FailAt) { return nullptr; }
  return std::malloc(size == 0 ? 1 : size);
}

std::atomic<long> Operations = 0;        // on files
std::atomic<long> FailOperationAt = -1;  // likewise

bool OperationFails() { return Operations++ == FailOperationAt; }

}  // namespace

#if defined(_WIN32)
// The linker leads the library's calls here. The library is part of this program, and is not told that it is loaded.
extern "C" {
std::size_t __real_fread(void* buffer, std::size_t size, std::size_t count, std::FILE* file);
std::size_t __wrap_fread(void* buffer, std::size_t size, std::size_t count, std::FILE* file) {
  return OperationFails() ? 0 : __real_fread(buffer, size, count, file);
}
int __real_fseeko64(std::FILE* file, long long offset, int whence);
int __wrap_fseeko64(std::FILE* file, long long offset, int whence) {
  return OperationFails() ? -1 : __real_fseeko64(file, offset, whence);
}
}
const bool Loaded = (latigo::AllocateLastError(), true);
#else
extern "C" [[gnu::visibility("default")]] std::size_t fread(void* buffer, std::size_t size, std::size_t count,
                                                            std::FILE* file) {
  static const auto real = reinterpret_cast<decltype(&fread)>(dlsym(RTLD_NEXT, "fread"));
  return OperationFails() ? 0 : real(buffer, size, count, file);
}
extern "C" [[gnu::visibility("default")]] int fseeko(std::FILE* file, off_t offset, int whence) {
  static const auto real = reinterpret_cast<decltype(&fseeko)>(dlsym(RTLD_NEXT, "fseeko"));
  return OperationFails() ? -1 : real(file, offset, whence);
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
  // Makes each allocation of the call fail in turn, until the call succeeds with none failing.
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

TEST_F(FailureTest, TheRoadOfAPointAllocatesNothing) {
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

TEST_F(FailureTest, EveryFileOperationThatFailsIsToldAndLeavesTheObjectUsable) {
  const std::string datum = Write("datum", Grid{.nz = 2}.Bytes());
  const std::string geoid = Write("geoid", Grid{}.Bytes());
  const double latitude = Rad(50.1), longitude = Rad(10.1);
  // Reading the header, looking at the length, finding a row, reading it and the next one; and nothing fails.
  const std::vector<std::array<std::int32_t, 3>> codes = {{9, 0, 0},  {0, 13, 13}, {0, 13, 0},
                                                          {0, 13, 0}, {0, 13, 0},  {0, 0, 0}};
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
    EXPECT_EQ(std::fabs(to[1] - longitude) < 1e-12, i < 5) << "carried across unshifted, or not at all";
  }
}

TEST_F(FailureTest, GridsCutOffAtAnyLengthOrReplacedWhileOpenGiveACodeOrTheirValues) {
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

TEST_F(FailureTest, EveryAllocationThatFailsEndsInCodeOne) {
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
