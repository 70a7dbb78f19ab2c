#include "rows.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <random>

namespace bench {

namespace {

bool Agreed = true;

// A fixed seed: the same points in every run.
std::mt19937_64 Generator(20260101);

void Measure(benchmark::State& state, const Row& row) {
  const std::size_t n = row.contestants.size();
  std::vector<std::vector<double>> times(n);
  std::vector<std::vector<double>> ratios(n);
  std::vector<double> now(n);
  for (const Contestant& contestant : row.contestants) {
    contestant.round();
  }
  bool forward = true;
  for ([[maybe_unused]] auto _ : state) {
    const Stopwatch whole;
    for (std::size_t i = 0; i < n; ++i) {
      const std::size_t turn = forward ? i : n - 1 - i;
      now[turn] = row.contestants[turn].round();
    }
    forward = !forward;
    state.SetIterationTime(whole.Nanoseconds() * 1e-9);
    for (std::size_t i = 0; i < n; ++i) {
      times[i].push_back(now[i]);
      ratios[i].push_back(now[0] / now[i]);
    }
  }
  for (std::size_t i = 0; i < n; ++i) {
    state.counters["ns " + row.contestants[i].name] = Median(times[i]);
    if (i > 0) {
      state.counters["ratio " + row.contestants[i].name] = Median(ratios[i]);
    }
  }
  for (const auto& [name, ratio] : row.targets) {
    state.counters["target " + name] = ratio;
  }
  if (!row.floorBinds) {
    state.counters["free floor"] = 1;
  }
}

}  // namespace

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

Points RandomPoints(const std::vector<Range>& ranges, std::size_t count) {
  Points points(count);
  for (Values& point : points) {
    for (std::size_t k = 0; k < ranges.size(); ++k) {
      point[k] = std::uniform_real_distribution(ranges[k].low, ranges[k].high)(Generator);
    }
  }
  return points;
}

Points Scaled(const Points& points, const Values& factors, bool divide) {
  Points scaled = points;
  for (Values& point : scaled) {
    for (std::size_t k = 0; k < point.size(); ++k) {
      if (factors[k] != 1) {
        point[k] = divide ? point[k] / factors[k] : point[k] * factors[k];
      }
    }
  }
  return scaled;
}

bool Agree(const Row& row) {
  const Contestant& first = row.contestants.front();
  if (!first.answers) {
    return true;
  }
  const Points expected = first.answers();
  bool agree = true;
  for (const Contestant& contestant : row.contestants) {
    const Points given = contestant.answers();
    Values worst{};
    for (std::size_t i = 0; i < expected.size(); ++i) {
      for (std::size_t k = 0; k < worst.size(); ++k) {
        const double difference = std::fabs(given[i][k] - expected[i][k]);
        worst[k] = difference <= worst[k] ? worst[k] : difference;
      }
    }
    for (std::size_t k = 0; k < worst.size(); ++k) {
      if (!(worst[k] <= contestant.tolerance[k])) {
        std::fprintf(stderr, "%s: %s and %s differ in value %zu by %g, allowed %g\n", row.name.c_str(),
                     first.name.c_str(), contestant.name.c_str(), k + 1, worst[k], contestant.tolerance[k]);
        agree = false;
      }
    }
  }
  Agreed = Agreed && agree;
  return agree;
}

void Register(Row row) {
  const std::string name = row.name;
  const auto measure = [row = std::move(row), agree = std::optional<bool>()](benchmark::State& state) mutable {
    if (!agree) {
      agree = Agree(row);
    }
    if (*agree) {
      Measure(state, row);
    } else {
      state.SkipWithError("the contestants disagree");
    }
  };
  benchmark::RegisterBenchmark(name.c_str(), measure)->UseManualTime()->Unit(benchmark::kMicrosecond);
}

bool AllAgreed() {
  return Agreed;
}

}  // namespace bench
