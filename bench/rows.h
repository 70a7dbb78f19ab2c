// A row of the benchmark: contestants that do the same work on the same points. Before a row is timed, the results of
// all contestants are compared. Timing is in rounds: each contestant in turn converts the same next points, in
// alternating order, so that disturbances affect all contestants equally. The reported value is the median over the
// rounds of the ratio within a round.
#pragma once

#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace bench {

// Input or output of a conversion; a row uses as many of the values as it needs.
using Values = std::array<double, 4>;
using Points = std::vector<Values>;

// Enough points that branch prediction cannot adapt to them; and so few in one round that another process rarely
// interrupts it.
inline constexpr std::size_t PointCount = 16384;
inline constexpr std::size_t RoundPoints = 1024;

// Limits of a random value.
struct Range {
  double low, high;
};
Points RandomPoints(const std::vector<Range>& ranges, std::size_t count = PointCount);

struct Contestant {
  std::string name;
  // One round; returns nanoseconds per point.
  std::function<double()> round;
  // The results for the points of comparison, in the units of the row; empty if there is nothing to compare.
  std::function<Points()> answers;
  // Largest difference of the results from the first contestant's.
  Values tolerance{};
};

// A contestant's units of input and output, as fractions of the row's.
struct Units {
  Values in{1, 1, 1, 1};
  Values out{1, 1, 1, 1};
};

struct Row {
  std::string name;
  std::vector<Contestant> contestants;                  // the first is the subject of the row
  std::vector<std::pair<std::string, double>> targets;  // largest acceptable ratio to a contestant's time
  bool floorBinds = true;                               // false if the floor is only for comparison

  void Add(Contestant contestant) { contestants.push_back(std::move(contestant)); }
};

double Median(std::vector<double> values);

Points Scaled(const Points& points, const Values& factors, bool divide);

// Nanoseconds between two readings of the clock.
class Stopwatch {
 public:
  double Nanoseconds() const {
    return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start_).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// The points of a row, and those at which results are compared: the same, unless the row has others.
struct Task {
  Points points;
  Points comparison;

  const Points& Compared() const { return comparison.empty() ? points : comparison; }
};

// A contestant that converts point by point: convert(const Values& in, Values& out). All such contestants use this
// loop.
template <typename Convert>
Contestant PointByPoint(std::string name, const Task& task, const Values& tolerance, Convert convert,
                        const Units& units = {}) {
  struct State {
    Convert convert;
    Points in, out;
    std::size_t next = 0;  // first point of the next round
  };
  const auto state = std::make_shared<State>(
      State{std::move(convert), Scaled(task.points, units.in, true), Points(task.points.size())});
  const auto round = [state] {
    const std::size_t first = state->next;
    const std::size_t end = first + RoundPoints;
    const Stopwatch watch;
    for (std::size_t i = first; i < end; ++i) {
      state->convert(state->in[i], state->out[i]);
    }
    const double time = watch.Nanoseconds() / RoundPoints;
    state->next = end < state->in.size() ? end : 0;
    return time;
  };
  const auto answers = [state, compared = Scaled(task.Compared(), units.in, true), out = units.out] {
    Points results(compared.size());
    for (std::size_t i = 0; i < compared.size(); ++i) {
      state->convert(compared[i], results[i]);
    }
    return Scaled(results, out, false);
  };
  return {std::move(name), round, answers, tolerance};
}

// Tolerances of positions, for results in metres and in radians.
constexpr Values Metres(double tolerance) {
  return {tolerance, tolerance, tolerance, 0};
}
constexpr Values Radians(double tolerance) {
  return {tolerance, tolerance, 0, 0};
}

// Compares every contestant's results with the first one's, and reports disagreements on standard error; NaN disagrees
// with everything.
bool Agree(const Row& row);

// Registers a row with Google Benchmark.
void Register(Row row);

// False if any row's contestants have disagreed.
bool AllAgreed();

}  // namespace bench
