#include "certificate.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "amounts.h"

namespace latigo::grids {

namespace {

// Gathers differences.
class Gatherer {
 public:
  void Add(double metres, const Point& at) {
    all_.push_back(metres);
    if (metres >= result_.maximum) {
      result_.maximum = metres, result_.latitude = at.latitude, result_.longitude = at.longitude;
    }
  }
  void OnlyOne() { ++result_.onlyOne; }

  Statistics Finish() {
    if (all_.empty()) {
      return result_;
    }
    double squares = 0;
    for (const double metres : all_) {
      squares += metres * metres;
    }
    const auto count = static_cast<double>(all_.size());
    const auto place = all_.begin() + static_cast<std::ptrdiff_t>(0.99 * (count - 1));
    std::nth_element(all_.begin(), place, all_.end());
    result_.points = all_.size(), result_.rms = std::sqrt(squares / count), result_.percentile99 = *place;
    return result_;
  }

 private:
  std::vector<double> all_;
  Statistics result_;
};

// From south to north, so that the library reads each row of the file once.
void Sort(std::vector<Point>& points) {
  std::sort(points.begin(), points.end(), [](const Point& a, const Point& b) { return a.latitude < b.latitude; });
}

double Distance(const Position& one, const Position& other) {
  return Metres(
      Kind::Shift,
      {(one.latitude - other.latitude) * 3600, std::remainder(one.longitude - other.longitude, 360) * 3600, 0},
      one.latitude);
}

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}
  double Below(double limit) { return limit * std::ldexp(static_cast<double>(engine_() >> 11U), -53); }

 private:
  std::mt19937_64 engine_;
};

}  // namespace

std::string Statistics::Text() const {
  return std::to_string(points) + " points: rms " + Length(rms) + ", 99 % within " + Length(percentile99) +
         ", maximum " + Length(maximum) + " at " + Degrees(latitude) + " " + Degrees(longitude);
}

std::vector<Point> RandomPoints(const Area& area, std::size_t count, std::uint64_t seed) {
  Random random(seed);
  std::vector<Point> points(count);
  for (Point& point : points) {
    point.latitude = area.south + random.Below(area.north - area.south);
    point.longitude = area.west + random.Below(area.east - area.west);
  }
  return points;
}

std::vector<Point> SteepPoints(const Field& source, const Lattice& lattice, std::size_t count, std::uint64_t seed) {
  constexpr std::size_t Tries = 100;                    // cells looked at for each point
  constexpr double Low = 0.2113248654, High = 1 - Low;  // fractions where S(t) - t is extreme
  const Area limits = lattice.Limits();
  std::vector<std::pair<double, Point>> cells;  // steepness, south-western node
  for (const Point& point : RandomPoints(limits, count * Tries, seed)) {
    const double latStep = lattice.latStep / 3600.0, lonStep = lattice.lonStep / 3600.0;
    const Point node{lattice.South() + latStep * std::floor((point.latitude - lattice.South()) / latStep),
                     lattice.West() + lonStep * std::floor((point.longitude - lattice.West()) / lonStep)};
    Values here{}, north{}, east{};
    if (source.At(node.latitude, node.longitude, here) && source.At(node.latitude + latStep, node.longitude, north) &&
        source.At(node.latitude, node.longitude + lonStep, east)) {
      cells.emplace_back(Metres(source.kind, Minus(north, here), node.latitude) +
                             Metres(source.kind, Minus(east, here), node.latitude),
                         node);
    }
  }
  std::sort(cells.begin(), cells.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
  std::vector<Point> points;
  for (std::size_t i = 0; i < std::min(count / 4, cells.size()); ++i) {
    for (const double v : {Low, High}) {
      for (const double u : {Low, High}) {
        points.push_back({cells[i].second.latitude + v * lattice.latStep / 3600,
                          cells[i].second.longitude + u * lattice.lonStep / 3600});
      }
    }
  }
  return points;
}

std::vector<Point> BorderPoints(const Field& source, const Lattice& lattice, std::size_t count) {
  const Area limits = lattice.Limits();
  // A hundredth of a cell, where the blend is nearly the border's own value, but more than rounding counts as inside.
  const double north = std::max(lattice.latStep / 3.6e5, 2 * FloatRounding),
               east = std::max(lattice.lonStep / 3.6e5, 2 * FloatRounding);
  std::vector<Point> points;
  const auto add = [&](double latitude, double longitude) {
    const double at = limits.west + EastOf(limits.west, longitude);
    Values ignored{};
    if (limits.south <= latitude && latitude <= limits.north && limits.west <= at && at <= limits.east &&
        source.At(latitude, at, ignored)) {
      points.push_back({latitude, at});
    }
  };
  for (const Layer& layer : source.layers) {
    if (source.layers.size() == 1 || layer.periodic) {
      continue;
    }
    const Axis &lat = layer.latitude, &lon = layer.longitude;
    const auto along = [&](const Axis& axis, double step, const auto& at) {
      const double length = axis.End() - axis.start;
      const auto sides = static_cast<std::size_t>(std::clamp(length * 3600 / step, 2.0, static_cast<double>(count)));
      for (std::size_t i = 0; i <= sides; ++i) {
        at(axis.start + length * static_cast<double>(i) / static_cast<double>(sides));
      }
    };
    along(lon, lattice.lonStep,
          [&](double longitude) { add(lat.start - north, longitude), add(lat.End() + north, longitude); });
    along(lat, lattice.latStep,
          [&](double latitude) { add(latitude, lon.start - east), add(latitude, lon.End() + east); });
  }
  return points;
}

Statistics Measure(const Surface& one, const Surface& other, std::vector<Point> points) {
  Sort(points);
  Gatherer gatherer;
  for (const Point& point : points) {
    Values left{}, right{};
    const bool inOne = one.At(point.latitude, point.longitude, left);
    const bool inOther = other.At(point.latitude, point.longitude, right);
    if (inOne && inOther) {
      gatherer.Add(Metres(one.TheKind(), Minus(left, right), point.latitude), point);
    } else if (inOne != inOther) {
      gatherer.OnlyOne();
    }
  }
  return gatherer.Finish();
}

Statistics MeasureOther(const LibraryGrid& library, const Surface& source, bool toWgs84, std::vector<Point> points) {
  constexpr int Iterations = 20;
  Sort(points);
  Gatherer gatherer;
  for (const Point& point : points) {
    const Position from{point.latitude, point.longitude, 0};
    Values values{};
    bool known = library.At(point.latitude, point.longitude, values);
    Position to = from;
    for (int i = 0; i < Iterations && known; ++i) {
      known = source.At(to.latitude, to.longitude, values);
      const double sign = toWgs84 ? 1 : -1;
      to = library.TheKind() == Kind::Translation
               ? library.Geographic(Minus(library.Cartesian(from, false), values), true)
               : Position{point.latitude + sign * values[0] / 3600, point.longitude + sign * values[1] / 3600, 0};
    }
    if (known) {
      gatherer.Add(Distance(toWgs84 ? library.ToWgs84(from) : library.FromWgs84(from), to), point);
    }
  }
  return gatherer.Finish();
}

}  // namespace latigo::grids
