// What the library allocates: nothing on the road of a point, and a code instead of an exception when memory runs out.
// The operators below are those of the whole process, the library's included.
#include <atomic>
#include <new>

#include "support.h"

namespace {

std::atomic<long> Allocations = 0;
std::atomic<long> FailAt = -1;  // the allocation that fails, counted from 0; -1 for none

void* Allocate(std::size_t size) {
  if (Allocations++ == FailAt) { return nullptr; }
  return std::malloc(size == 0 ? 1 : size);
}

}  // namespace

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

class AllocationTest : public Scratch {
 protected:
  AllocationTest() { two_.nz = 2; }

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

  Grid two_;  // of two values, for a datum
};

TEST_F(AllocationTest, TheRoadOfAPointAllocatesNothing) {
  const std::string datum = Write("datum", two_.Bytes());
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

TEST_F(AllocationTest, EveryAllocationThatFailsEndsInCodeOne) {
  FailEachIn([] {
    const GeodesyParams params = Utm31();
    return Object(CreateGeodesy(&params)) != nullptr;
  });
  const std::string file = Write("file.ini", "[Geodesy]\nProjection=UTM\nSemiMajorAxis=6378137\nFlattening=298\n");
  FailEachIn([&] { return Object(CreateFileGeodesy(file.c_str(), nullptr)) != nullptr; });

  const std::string datum = Write("datum", two_.Bytes());
  const std::string geoid = Write("geoid", Grid{}.Bytes());
  const Object object = Make(Utm31());
  FailEachIn([&] { return SetEllModel(object.get(), datum.c_str()) == 1; });
  FailEachIn([&] { return SetGeoid(object.get(), geoid.c_str(), 1) == 1; });
  double undulation = 0;
  EXPECT_EQ(Undulation(object.get(), Rad(50), Rad(10), &undulation), 1);
}

}  // namespace
