// The speed-up by a second thread: the same points converted by one thread and by two, each with its own object. The
// floor in the same run shows the machine's limit.
#include <benchmark/benchmark.h>
#include <pthread.h>
#include <sched.h>

#include <atomic>
#include <optional>
#include <thread>

#include "floors/datum.h"
#include "floors/lambert.h"
#include "floors/transverse_mercator.h"
#include "library.h"
#include "records.h"
#include "rows.h"

namespace bench {

namespace {

constexpr GeodesyParams Utm = {.SemiMajorAxis = 6378137,
                               .InvFlattening = 298.257223563,
                               .Kind = LATIGO_KIND_TRANSVERSE_MERCATOR,
                               .Unit = 1,
                               .ScaleFactor = 0.9996,
                               .CentralMeridian = 3 * Degree,
                               .RefLatitude = 0,
                               .NorthParallel = 0,
                               .SouthParallel = 0,
                               .SkewAzimuth = 0,
                               .FalseEasting = 500000,
                               .FalseNorthing = 0};
constexpr GeodesyParams Cone = {.SemiMajorAxis = 6378137,
                                .InvFlattening = 298.257222101,
                                .Kind = LATIGO_KIND_LAMBERT,
                                .Unit = 1,
                                .ScaleFactor = 1,
                                .CentralMeridian = 3 * Degree,
                                .RefLatitude = 46.5 * Degree,
                                .NorthParallel = 49 * Degree,
                                .SouthParallel = 44 * Degree,
                                .SkewAzimuth = 0,
                                .FalseEasting = 700000,
                                .FalseNorthing = 6600000};

// The processors available to this process.
std::vector<int> Processors() {
  cpu_set_t allowed;
  sched_getaffinity(0, sizeof allowed, &allowed);
  std::vector<int> processors;
  for (int i = 0; i < CPU_SETSIZE; ++i) {
    if (CPU_ISSET(i, &allowed)) {
      processors.push_back(i);
    }
  }
  return processors;
}

// Restricts the calling thread to these processors. Otherwise a busy system may run two threads on one.
void StayOn(const std::vector<int>& processors) {
  cpu_set_t set;
  CPU_ZERO(&set);
  for (const int processor : processors) {
    CPU_SET(processor, &set);
  }
  pthread_setaffinity_np(pthread_self(), sizeof set, &set);
}

// A thread with a processor of its own, which runs pieces of work in turn.
class SecondThread {
 public:
  explicit SecondThread(int processor)
      : thread_([this, processor] {
          StayOn({processor});
          for (;;) {
            work_.wait(nullptr);
            const std::function<void()>* const work = work_;
            if (!*work) {
              return;
            }
            (*work)();
            work_ = nullptr;
            work_.notify_one();
          }
        }) {}
  ~SecondThread() {
    const std::function<void()> none;
    Start(none);
    thread_.join();
  }
  SecondThread(const SecondThread&) = delete;
  SecondThread& operator=(const SecondThread&) = delete;

  void Start(const std::function<void()>& work) {
    work_ = &work;
    work_.notify_one();
  }
  void Wait() const {
    while (const auto* const work = work_.load()) {
      work_.wait(work);
    }
  }

 private:
  std::atomic<const std::function<void()>*> work_ = nullptr;
  std::thread thread_;
};

// The work of both threads.
struct Halves {
  std::function<void()> first, second;

  double OneThread() const {
    const Stopwatch watch;
    first();
    second();
    return watch.Nanoseconds();
  }
  double TwoThreads(SecondThread& other) const {
    const Stopwatch watch;
    other.Start(second);
    first();
    other.Wait();
    return watch.Nanoseconds();
  }
};

// Converts the points repeatedly, for about ten milliseconds, so that the start of a thread is negligible.
template <typename Convert>
std::function<void()> Half(const Points& points, int repeats, Convert convert) {
  return [points, repeats, out = Points(points.size()), convert]() mutable {
    for (int repeat = 0; repeat < repeats; ++repeat) {
      for (std::size_t i = 0; i < points.size(); ++i) {
        convert(points[i], out[i]);
      }
    }
    benchmark::DoNotOptimize(out.data());
  };
}

struct Times {
  std::vector<double> one, two, speedup;
};

void Measure(benchmark::State& state, const Halves& latigo, const Halves& floor, int repeats) {
  const std::vector<int> processors = Processors();
  if (processors.size() < 2) {
    state.SkipWithError("needs two processors");
    return;
  }
  SecondThread other(processors[1]);
  StayOn({processors[0]});
  const Halves* const halves[] = {&latigo, &floor};
  Times times[2];
  std::vector<double> part;
  bool forward = true;
  for ([[maybe_unused]] auto _ : state) {
    double sum = 0;
    for (int i = 0; i < 2; ++i) {
      const int turn = forward ? i : 1 - i;
      const double one = halves[turn]->OneThread();
      const double two = halves[turn]->TwoThreads(other);
      times[turn].one.push_back(one);
      times[turn].two.push_back(two);
      times[turn].speedup.push_back(one / two);
      sum += one + two;
    }
    forward = !forward;
    part.push_back(times[0].speedup.back() / times[1].speedup.back());
    state.SetIterationTime(sum * 1e-9);
  }
  StayOn(processors);
  const double conversions = 2.0 * repeats * PointCount;
  state.counters["one latigo"] = Median(times[0].one) / conversions;
  state.counters["two latigo"] = Median(times[0].two) / conversions;
  state.counters["speedup latigo"] = Median(times[0].speedup);
  state.counters["speedup floor"] = Median(times[1].speedup);
  state.counters["part"] = Median(part);
  state.counters["least part"] = 0.9;
}

template <typename Convert, typename FloorConvert>
void AddRow(const std::string& name, const Points& points, const Values& tolerance, int repeats, const Convert& first,
            const Convert& second, const FloorConvert& floor) {
  const Task task = {points, {}};
  Row row{.name = "two threads, " + name, .contestants = {}, .targets = {}};
  row.Add(PointByPoint("latigo", task, tolerance, first));
  row.Add(PointByPoint("second object", task, tolerance, second));
  row.Add(PointByPoint("floor", task, tolerance, floor));
  const Halves latigo = {Half(points, repeats, first), Half(points, repeats, second)};
  const Halves floors = {Half(points, repeats, floor), Half(points, repeats, floor)};
  const auto measure = [=, agree = std::optional<bool>()](benchmark::State& state) mutable {
    if (!agree) {
      agree = Agree(row);
    }
    if (*agree) {
      Measure(state, latigo, floors, repeats);
    } else {
      state.SkipWithError("the contestants disagree");
    }
  };
  benchmark::RegisterBenchmark(row.name.c_str(), measure)->UseManualTime()->MinTime(0.5)->Unit(benchmark::kMicrosecond);
}

}  // namespace

void AddThreadRows(const Run& run) {
  if (!run.WithOthers()) {
    return;
  }
  const Library& library = run.libraries.front();
  const Points utmPoints = RandomPoints({{-80 * Degree, 80 * Degree}, {0, 6 * Degree}});
  const TransverseMercatorFloor utmFloor(Utm);
  const auto utm = [&] {
    return [object = library.Make(Utm), GeoXY = library.GeoXY](const Values& in, Values& out) {
      GeoXY(object.get(), &out[0], &out[1], in[0], in[1]);
    };
  };
  AddRow("Transverse Mercator GeoXY", utmPoints, Metres(1e-6), 25, utm(), utm(),
         [utmFloor](const Values& in, Values& out) { utmFloor.GeoXY(in[0], in[1], out[0], out[1]); });

  const LambertFloor coneFloor(Cone);
  Points conePoints = RandomPoints({{41 * Degree, 52 * Degree}, {-6 * Degree, 11 * Degree}});
  for (Values& point : conePoints) {
    const Values position = point;
    coneFloor.GeoXY(position[0], position[1], point[0], point[1]);
  }
  const auto cone = [&] {
    return [object = library.Make(Cone), XYGeo = library.XYGeo](const Values& in, Values& out) {
      XYGeo(object.get(), in[0], in[1], &out[0], &out[1]);
    };
  };
  AddRow("Lambert XYGeo", conePoints, Radians(1e-13), 4, cone(), cone(),
         [coneFloor](const Values& in, Values& out) { coneFloor.XYGeo(in[0], in[1], out[0], out[1]); });

  const EcefFloor earth(Utm);
  const Points positions = RandomPoints({{-85 * Degree, 85 * Degree}, {-179 * Degree, 179 * Degree}, {-500, 9000}});
  const auto cartesian = [&] {
    return [object = library.Make(Utm), GeoECEF = library.GeoECEF](const Values& in, Values& out) {
      GeoECEF(object.get(), &out[0], &out[1], &out[2], in[0], in[1], in[2]);
    };
  };
  AddRow("GeoECEF", positions, Metres(1e-6), 25, cartesian(), cartesian(),
         [earth](const Values& in, Values& out) { earth.GeoECEF(in[0], in[1], in[2], out[0], out[1], out[2]); });
}

}  // namespace bench
