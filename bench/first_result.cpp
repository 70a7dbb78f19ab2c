// latigo-first-result latigo|floor|proj LIBRARY: loads a library, makes a coordinate system (the British grid) and
// converts one position; prints the nanoseconds from before the loading, x and y.
#include <dlfcn.h>

#include <chrono>
#include <cstdio>
#include <cstring>

#include "records.h"

#if BENCH_HAS_PROJ
#include <proj.h>
#endif

namespace {

constexpr double Latitude = 52.5 * bench::Degree;
constexpr double Longitude = 1.5 * bench::Degree;

template <typename Function>
Function* Find(void* library, const char* name) {
  return reinterpret_cast<Function*>(dlsym(library, name));
}

bool Latigo(void* library, double& x, double& y) {
  auto* const create = Find<decltype(CreateGeodesy)>(library, "CreateGeodesy");
  auto* const convert = Find<decltype(GeoXY)>(library, "GeoXY");
  return convert(create(&bench::BritishGrid), &x, &y, Latitude, Longitude) == 1;
}

bool Floor(void* library, double& x, double& y) {
  using Convert = void(const GeodesyParams*, double, double, double*, double*);
  Find<Convert>(library, "FloorGeoXY")(&bench::BritishGrid, Latitude, Longitude, &x, &y);
  return true;
}

#if BENCH_HAS_PROJ
bool Proj(void* library, double& x, double& y) {
  auto* const create = Find<decltype(proj_create)>(library, "proj_create");
  auto* const convert = Find<decltype(proj_trans)>(library, "proj_trans");
  PJ* const object = create(nullptr,
                            "+proj=tmerc +a=6377563.396 +rf=299.3249646 +lat_0=49 +lon_0=-2 +k_0=0.9996012717 "
                            "+x_0=400000 +y_0=-100000");
  if (object == nullptr) {
    return false;
  }
  PJ_COORD position{};
  position.lp = {Longitude, Latitude};
  const PJ_COORD grid = convert(object, PJ_FWD, position);
  x = grid.xy.x;
  y = grid.xy.y;
  return true;
}
#endif

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    return 2;
  }
  const auto start = std::chrono::steady_clock::now();
  void* const library = dlopen(argv[2], RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 2;
  }
  double x = 0;
  double y = 0;
  bool good = false;
  if (std::strcmp(argv[1], "latigo") == 0) {
    good = Latigo(library, x, y);
  } else if (std::strcmp(argv[1], "floor") == 0) {
    good = Floor(library, x, y);
#if BENCH_HAS_PROJ
  } else if (std::strcmp(argv[1], "proj") == 0) {
    good = Proj(library, x, y);
#endif
  }
  const auto end = std::chrono::steady_clock::now();
  std::printf("%.0f %.9f %.9f\n", std::chrono::duration<double, std::nano>(end - start).count(), x, y);
  return good ? 0 : 1;
}
