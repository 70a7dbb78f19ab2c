#include "plan.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>
#include <vector>

#include "amounts.h"

namespace latigo::grids {

namespace {

constexpr double FullCircle = 1296000;  // arc seconds
constexpr double Slack = 1e-3;          // arc seconds; what rounding makes of whole steps

// How much a cell's values change along latitude and along longitude, metres an arc second.
struct Slope {
  double alongLatitude, alongLongitude;
};

// Those slopes that no other one exceeds in both directions.
void KeepSteepest(std::vector<Slope>& slopes) {
  std::sort(slopes.begin(), slopes.end(), [](const Slope& a, const Slope& b) {
    return a.alongLatitude > b.alongLatitude ||
           (a.alongLatitude == b.alongLatitude && a.alongLongitude > b.alongLongitude);
  });
  std::vector<Slope> kept;
  for (const Slope& slope : slopes) {
    if (kept.empty() || slope.alongLongitude > kept.back().alongLongitude) {
      kept.push_back(slope);
    }
  }
  slopes = std::move(kept);
}

Values NodeOf(const Layer& layer, int row, int col) {
  Values values{};
  std::copy_n(layer.Node(row, col), layer.depth, values.begin());
  return values;
}

// Whether a cell, from its south-western node, reaches into the area.
bool Touches(const Layer& layer, int row, int col, const Area& area) {
  const double south = layer.latitude.At(row), east = EastOf(area.west, layer.longitude.At(col));
  const double latStep = layer.latitude.step, lonStep = layer.longitude.step, width = area.east - area.west;
  return south + latStep > area.south && south < area.north && (east < width || east + lonStep > 360);
}

// What the blend of a lattice as dense as the source may miss of it along a line of four nodes, between the two in the
// middle, metres. `kinks`: the lattice's cells do not begin at the source's nodes, so the change of slope at a node
// adds a quarter of it. A cubic is steeper than the line between its nodes.
double Defect(const Field& field, const std::array<Values, 4>& line, double latitude, bool kinks) {
  const double curve = field.interpolation == Interpolation::Bicubic ? 1.25 : 1;
  double bend = 0;
  for (std::size_t i = 0; kinks && i < 2; ++i) {
    const double change =
        Metres(field.kind, Minus(Minus(line[i + 2], line[i + 1]), Minus(line[i + 1], line[i])), latitude);
    bend = std::fmax(bend, change / 4);
  }
  return curve * BlendDefect * Metres(field.kind, Minus(line[2], line[1]), latitude) + bend;
}

// The steepest cells of a layer in an area.
void AddSlopes(const Field& field, const Layer& layer, const Area& area, bool kinks, std::vector<Slope>& slopes) {
  constexpr std::size_t Many = 100000;
  const int cols = layer.longitude.nodes, rows = layer.latitude.nodes;
  const auto at = [&](int row, int col) {
    constexpr double None = std::numeric_limits<double>::quiet_NaN();
    const int there = layer.periodic ? (col + cols) % cols : col;
    return row < 0 || row >= rows || there < 0 || there >= cols ? Values{None, None, None} : NodeOf(layer, row, there);
  };
  for (int row = 0; row + 1 < rows; ++row) {
    const double latitude = layer.latitude.At(row);
    for (int col = 0; col + (layer.periodic ? 0 : 1) < cols; ++col) {
      if (!Touches(layer, row, col, area)) {
        continue;
      }
      double north = 0, east = 0;  // the greater of the cell's two edges
      for (int i = 0; i < 2; ++i) {
        const int r = row + i, c = col + i;
        north = std::fmax(north,
                          Defect(field, {at(row - 1, c), at(row, c), at(row + 1, c), at(row + 2, c)}, latitude, kinks));
        east = std::fmax(east,
                         Defect(field, {at(r, col - 1), at(r, col), at(r, col + 1), at(r, col + 2)}, latitude, kinks));
      }
      slopes.push_back({north / (layer.latitude.step * 3600), east / (layer.longitude.step * 3600)});
    }
    if (slopes.size() > Many) {
      KeepSteepest(slopes);
    }
  }
  KeepSteepest(slopes);
}

double ErrorOf(const std::vector<Slope>& slopes, int latStep, int lonStep) {
  double worst = 0;
  for (const Slope& slope : slopes) {
    worst = std::max(worst, slope.alongLatitude * latStep + slope.alongLongitude * lonStep);
  }
  return worst;
}

// What float32 makes of the largest value.
double Rounding(const Field& field) {
  float most = 0;
  for (const Layer& layer : field.layers) {
    for (const float value : layer.values) {
      most = std::fmax(most, std::fabs(value));
    }
  }
  const double seconds = field.kind == Kind::Shift ? MetresPerArcSecond : 1;
  return std::ldexp(double{most}, -24) * seconds * std::sqrt(Depth(field.kind));
}

// Candidates for the step along an axis, arc seconds.
struct Steps {
  std::vector<int> choice;
  bool aligned;
};

bool Whole(double seconds) {
  return std::fabs(seconds - std::round(seconds)) < Slack;
}

std::vector<int> Divisors(int of) {
  std::vector<int> all;
  for (int i = 1; i <= of; ++i) {
    if (of % i == 0) {
      all.push_back(i);
    }
  }
  return all;
}

// Steps at which every node of every layer is a node of the lattice, where there are any.
Steps StepsOf(const Field& field, Axis Layer::*axis) {
  int common = 0;
  double finest = FullCircle;
  const double start = (field.layers.front().*axis).start;
  for (const Layer& layer : field.layers) {
    const Axis& own = layer.*axis;
    const double seconds = own.step * 3600, offset = (own.start - start) * 3600;
    finest = std::min(finest, seconds);
    const bool whole = Whole(seconds) && Whole(offset) && seconds < FullCircle;
    common =
        whole && common >= 0
            ? std::gcd(common, std::gcd(static_cast<int>(std::lround(seconds)), static_cast<int>(std::lround(offset))))
            : -1;
  }
  if (common > 0) {
    return {Divisors(common), true};
  }
  Steps steps{Divisors(3600), false};  // they divide a full circle too
  std::erase_if(steps.choice, [&](int step) { return step > finest; });
  if (steps.choice.empty()) {
    steps.choice.push_back(1);
  }
  return steps;
}

// Origin and count of nodes along an axis: from the last node before `from` to the first after `to`, within the
// source. All of them arc seconds.
struct Span {
  double first = 0;
  std::int64_t nodes = 0;
};

Span SpanOf(double start, double end, double from, double to, int step, bool endless) {
  double low = std::floor((from - start) / step + Slack), high = std::ceil((to - start) / step - Slack);
  if (!endless) {
    low = std::max(low, 0.0);
    high = std::min(high, std::floor((end - start) / step + Slack));
  }
  return {start + low * step, static_cast<std::int64_t>(high - low) + 1};
}

Lattice LatticeOf(const Field& field, const Area& wanted, bool around, int latStep, int lonStep) {
  const Area limits = field.Limits();
  const Span lat =
      SpanOf(limits.south * 3600, limits.north * 3600, wanted.south * 3600, wanted.north * 3600, latStep, false);
  Span lon;
  if (around) {
    lon = {-FullCircle / 2, static_cast<std::int64_t>(FullCircle) / lonStep + 1};
  } else {
    lon = SpanOf(limits.west * 3600, limits.east * 3600, wanted.west * 3600, wanted.east * 3600, lonStep,
                 field.layers.back().periodic);
    while (lon.first >= FullCircle / 2) {
      lon.first -= FullCircle;
    }
    while (lon.first < -FullCircle / 2) {
      lon.first += FullCircle;
    }
  }
  return {static_cast<float>(lon.first / 3600),
          static_cast<float>(lat.first / 3600),
          lonStep,
          latStep,
          lon.nodes,
          lat.nodes,
          Depth(field.kind)};
}

// The part of the area that the source covers, with its longitudes counted as the source does.
Area Within(const Field& field, const Area& area) {
  const Area limits = field.Limits();
  Area within{std::max(area.south, limits.south), area.west, std::min(area.north, limits.north), area.east};
  if (!field.layers.back().periodic) {
    const double offset = EastOf(limits.west, area.west), width = area.east - area.west;
    const bool wraps = offset + width >= 360 && offset > limits.east - limits.west;
    within.west = limits.west + (wraps ? 0 : offset);
    within.east = std::min(limits.east, limits.west + (wraps ? offset + width - 360 : offset + width));
  }
  if (!(within.south < within.north && within.west < within.east)) {
    throw Refused("nothing of the source lies in the area");
  }
  return within;
}

}  // namespace

Plan ChoosePlan(const Field& field, const std::optional<Area>& area, double tolerance, std::int64_t maxBytes) {
  const Area wanted = area ? Within(field, *area) : field.Limits();
  const Steps lat = StepsOf(field, &Layer::latitude), lon = StepsOf(field, &Layer::longitude);
  const bool around = field.layers.back().periodic && wanted.east - wanted.west > 360 - 1e-6;
  std::vector<Slope> slopes;
  const bool aligned = lat.aligned && lon.aligned && !field.Iterates();
  for (const Layer& layer : field.layers) {
    AddSlopes(field, layer, wanted, !aligned, slopes);
  }
  KeepSteepest(slopes);
  const double rounding = Rounding(field);

  Plan best, closest;
  std::int64_t needed = std::numeric_limits<std::int64_t>::max();
  bool found = false, any = false, tooNarrow = true, lost = false;
  for (const int latStep : lat.choice) {
    for (const int lonStep : lon.choice) {
      Plan plan{LatticeOf(field, wanted, around, latStep, lonStep), rounding, aligned};
      plan.bound += ErrorOf(slopes, latStep, lonStep);
      if (plan.lattice.LosesLongitudes()) {
        lost = true;
        continue;
      }
      if (plan.lattice.RecordBytes() < HeaderBytes || plan.lattice.rows < 2 || plan.lattice.cols < 2) {
        continue;
      }
      tooNarrow = false;
      const std::int64_t bytes = plan.lattice.FileBytes();
      if (plan.bound <= tolerance) {
        needed = std::min(needed, bytes);
      }
      if (!Fits(plan.lattice) || bytes > maxBytes) {
        continue;
      }
      if (plan.bound <= tolerance && (!found || bytes < best.lattice.FileBytes())) {
        best = plan, found = true;
      }
      if (!any || plan.bound < closest.bound) {
        closest = plan, any = true;
      }
    }
  }
  if (lost && !any && tooNarrow) {
    throw Refused(
        "the lattice would run from " + Degrees(wanted.west) + " to " + Degrees(wanted.east) +
        " degrees east; a file that begins west of 0 and ends beyond 180 loses longitudes: ask for an --area");
  }
  if (tooNarrow) {
    throw Refused("so few columns that a record does not hold the header");
  }
  if (found) {
    return best;
  }
  const std::string takes = rounding >= tolerance ? "float32 rounds the values to " + Length(rounding)
                            : needed == std::numeric_limits<std::int64_t>::max()
                                ? Length(tolerance) + " takes nodes closer than an arc second"
                                : Length(tolerance) + " takes " + Bytes(static_cast<double>(needed));
  const std::string within = " within " + Bytes(static_cast<double>(maxBytes));
  throw Refused(takes +
                (any ? ";" + within + " --tolerance " + LengthUp(closest.bound) + " is possible, or less with an --area"
                     : ", and no lattice fits" + within));
}

Area LargestWithoutGaps(const Field& field, const Area& area) {
  const Layer& coarse = field.layers.back();
  const double latStep = coarse.latitude.step, lonStep = coarse.longitude.step;
  const auto rows = static_cast<std::size_t>((area.north - area.south) / latStep + 1 + 1e-6);
  const auto cols = static_cast<std::size_t>((area.east - area.west) / lonStep + 1 + 1e-6);
  // For each row the heights of the columns of nodes with a value that end there, and the largest rectangle below them.
  std::vector<std::size_t> height(cols + 1);
  std::size_t most = 0, low = 0, high = 0, left = 0, right = 0;
  for (std::size_t row = 0; row < rows; ++row) {
    std::vector<std::pair<std::size_t, std::size_t>> open;  // first column and height, rising
    for (std::size_t col = 0; col <= cols; ++col) {
      Values values{};
      const bool known = col < cols && field.At(area.south + static_cast<double>(row) * latStep,
                                                area.west + static_cast<double>(col) * lonStep, values);
      height[col] = known ? height[col] + 1 : 0;
      std::size_t first = col;
      while (!open.empty() && open.back().second >= height[col]) {
        const auto [start, tall] = open.back();
        open.pop_back();
        if (tall > 1 && col - start > 1 && tall * (col - start) > most) {
          most = tall * (col - start), low = row + 1 - tall, high = row, left = start, right = col - 1;
        }
        first = start;
      }
      open.emplace_back(first, height[col]);
    }
  }
  if (most == 0) {
    throw Refused("no cell without a gap");
  }
  return {area.south + static_cast<double>(low) * latStep, area.west + static_cast<double>(left) * lonStep,
          area.south + static_cast<double>(high) * latStep, area.west + static_cast<double>(right) * lonStep};
}

}  // namespace latigo::grids
