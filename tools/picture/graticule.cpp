#include "graticule.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace latigo::picture {

namespace {

constexpr double LinesOverArea = 4;
constexpr double MostCrossings = 3;  // of lines through a cell; more are a jump of the coordinates

// Pixels.
constexpr int Width = Columns * Cell;
constexpr double LetterWidth = 5.6;
constexpr double LabelHeight = 11;
constexpr double Radius = 3.2;  // of a point

constexpr const char* LabelStyle =
    "font-size='10' stroke='#fff' stroke-width='3' stroke-linejoin='round' paint-order='stroke'";

struct Box {
  double left, top, right, bottom;
};

bool Overlap(const Box& a, const Box& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// The number of characters of UTF-8.
double Letters(const std::string& text) {
  return static_cast<double>(
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) != 0x80; }));
}

// 1, 2 or 5 times a power of ten.
double RoundStep(double atLeast) {
  const double power = std::pow(10, std::floor(std::log10(atLeast)));
  const double digit = atLeast / power;
  return power * (digit <= 1 ? 1 : digit <= 2 ? 2 : digit <= 5 ? 5 : 10);
}

std::string Pixels(double x, double y) {
  char text[48];
  std::snprintf(text, sizeof text, "%.1f %.1f", x, y);
  return text;
}

// One coordinate at the corners of all cells, row by row from the north; NaN without a value.
struct Corners {
  int rows;
  std::vector<double> values;

  double At(int row, int column) const { return values[static_cast<std::size_t>(row * (Columns + 1) + column)]; }

  // The step between lines: of the middle four fifths of the values, since those near a limit of the domain are huge.
  double Step() const {
    std::vector<double> sorted;
    std::copy_if(values.begin(), values.end(), std::back_inserter(sorted), [](double v) { return std::isfinite(v); });
    if (sorted.size() < 10) {
      return 0;
    }
    std::sort(sorted.begin(), sorted.end());
    const double range = sorted[sorted.size() * 9 / 10] - sorted[sorted.size() / 10];
    return range > 0 ? RoundStep(range / LinesOverArea) : 0;
  }
};

// Where a line of one value crosses an edge between two corners, if it does.
bool Crosses(double from, double to, double level, double& part) {
  part = (level - from) / (to - from);
  return (from < level) != (to < level);
}

// Adds the line of a value: a segment for each cell that it crosses.
void AddLine(const Frame& frame, const Corners& corners, double step, double level, std::string& path) {
  for (int row = 0; row < frame.rows; ++row) {
    for (int column = 0; column < Columns; ++column) {
      const double nw = corners.At(row, column);
      const double ne = corners.At(row, column + 1);
      const double se = corners.At(row + 1, column + 1);
      const double sw = corners.At(row + 1, column);
      const double range = std::max({nw, ne, se, sw}) - std::min({nw, ne, se, sw});
      if (!std::isfinite(nw + ne + se + sw) || range > MostCrossings * step) {
        continue;
      }
      const double x = frame.left + column * Cell;
      const double y = frame.top + row * Cell;
      double part = 0;
      std::vector<std::string> ends;
      if (Crosses(nw, ne, level, part)) {
        ends.push_back(Pixels(x + part * Cell, y));
      }
      if (Crosses(ne, se, level, part)) {
        ends.push_back(Pixels(x + Cell, y + part * Cell));
      }
      if (Crosses(sw, se, level, part)) {
        ends.push_back(Pixels(x + part * Cell, y + Cell));
      }
      if (Crosses(nw, sw, level, part)) {
        ends.push_back(Pixels(x, y + part * Cell));
      }
      for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
        path += "M" + ends[i] + "L" + ends[i + 1];
      }
    }
  }
}

// The first crossing of a line with the upper or lower edge, or else with the right or left edge, in pixels along it.
bool EdgeCrossing(const Frame& frame, const Corners& corners, bool horizontal, int edge, double step, double level,
                  double& along) {
  const int cells = horizontal ? Columns : frame.rows;
  for (int i = 0; i < cells; ++i) {
    const double from = horizontal ? corners.At(edge, i) : corners.At(i, edge);
    const double to = horizontal ? corners.At(edge, i + 1) : corners.At(i + 1, edge);
    double part = 0;
    if (std::fabs(to - from) <= MostCrossings * step && Crosses(from, to, level, part)) {
      along = (i + part) * Cell;
      return true;
    }
  }
  return false;
}

class Labels {
 public:
  // Adds a text if it covers no earlier one. `anchor` is start, middle or end; y is the base line.
  bool Add(double x, double y, const char* anchor, const std::string& text) {
    const double width = Letters(text) * LetterWidth;
    const double left = *anchor == 's' ? x : *anchor == 'm' ? x - width / 2 : x - width;
    const Box box{left - 2, y - LabelHeight + 2, left + width + 2, y + 2};
    if (std::any_of(boxes_.begin(), boxes_.end(), [&](const Box& other) { return Overlap(box, other); })) {
      return false;
    }
    boxes_.push_back(box);
    const std::string place = Pixels(x, y);
    svg_ += "<text x='" + place.substr(0, place.find(' ')) + "' y='" + place.substr(place.find(' ') + 1) +
            "' text-anchor='" + anchor + "'>" + text + "</text>\n";
    return true;
  }
  void Block(const Box& box) { boxes_.push_back(box); }
  std::string Svg() const { return std::string("<g ") + LabelStyle + ">\n" + svg_ + "</g>\n"; }

 private:
  std::vector<Box> boxes_;
  std::string svg_;
};

// The lines of one coordinate: eastings have their values at the top or bottom, northings at the right or left.
void AddLines(const Frame& frame, const Corners& corners, bool easting, double step, std::string& path,
              Labels& labels) {
  double low = NAN;
  double high = NAN;
  for (const double value : corners.values) {
    low = std::fmin(low, value);
    high = std::fmax(high, value);
  }
  constexpr double MostLines = 200;  // where a few coordinates are huge
  const double first = std::ceil(low / step);
  for (double i = first; i * step <= high && i < first + MostLines; ++i) {
    AddLine(frame, corners, step, i * step, path);
    const std::string text = Grouped(i * step);
    const double halfWidth = Letters(text) * LetterWidth / 2;
    double along = 0;
    if (easting) {
      const bool top = EdgeCrossing(frame, corners, true, 0, step, i * step, along);
      if (top || EdgeCrossing(frame, corners, true, frame.rows, step, i * step, along)) {
        labels.Add(frame.left + std::clamp(along, halfWidth + 2, Width - halfWidth - 2),
                   top ? frame.top + 11 : frame.Bottom() - 5, "middle", text);
      }
    } else {
      const bool right = EdgeCrossing(frame, corners, false, Columns, step, i * step, along);
      if (right || EdgeCrossing(frame, corners, false, 0, step, i * step, along)) {
        labels.Add(right ? frame.left + Width - 3 : frame.left + 3, frame.top + std::max(along - 2, 11.0),
                   right ? "end" : "start", text);
      }
    }
  }
}

}  // namespace

std::string Grouped(double value) {
  char digits[40];
  std::snprintf(digits, sizeof digits, "%.0f", std::fabs(value));
  std::string text;
  const std::string all = digits;
  for (std::size_t i = 0; i < all.size(); ++i) {
    text += (i > 0 && (all.size() - i) % 3 == 0 ? "\u2009" : "") + std::string(1, all[i]);
  }
  return (value < 0 ? "−" : "") + text;
}

GridLines DrawGridLines(const Frame& frame, const Forward& forward) {
  Corners eastings{frame.rows, {}};
  Corners northings{frame.rows, {}};
  const auto& [south, north, west, east] = frame.area;
  for (int row = 0; row <= frame.rows; ++row) {
    for (int column = 0; column <= Columns; ++column) {
      double x = NAN;
      double y = NAN;
      if (!forward({north - (north - south) * row / frame.rows, west + (east - west) * column / Columns}, x, y)) {
        x = y = NAN;
      }
      eastings.values.push_back(x);
      northings.values.push_back(y);
    }
  }
  GridLines lines;
  lines.stepX = eastings.Step();
  lines.stepY = northings.Step();
  std::string path;
  Labels labels;
  if (lines.stepX > 0) {
    AddLines(frame, eastings, true, lines.stepX, path, labels);
  }
  if (lines.stepY > 0) {
    AddLines(frame, northings, false, lines.stepY, path, labels);
  }
  // A light line below the dark one, since cells may be dark.
  lines.svg = "<path fill='none' stroke='#fff' stroke-opacity='0.6' stroke-width='2.2' d='" + path +
              "'/>\n<path fill='none' stroke='#222' stroke-opacity='0.8' stroke-width='0.8' d='" + path + "'/>\n" +
              labels.Svg();
  return lines;
}

std::size_t DrawPoints(const Frame& frame, const std::vector<NamedPoint>& points, std::string& svg) {
  const auto& [south, north, west, east] = frame.area;
  std::size_t outside = 0;
  std::string circles;
  Labels labels;
  std::vector<std::pair<double, double>> places;
  for (const auto& [at, name] : points) {
    double longitude = at.longitude;
    longitude += longitude < west ? 360 : longitude > east ? -360 : 0;
    if (!(at.latitude >= south && at.latitude <= north && longitude >= west && longitude <= east)) {
      ++outside;
      places.emplace_back(NAN, NAN);
      continue;
    }
    const double x = frame.X(longitude);
    const double y = frame.Y(at.latitude);
    places.emplace_back(x, y);
    labels.Block({x - Radius, y - Radius, x + Radius, y + Radius});
    const std::string place = Pixels(x, y);
    circles += "<circle cx='" + place.substr(0, place.find(' ')) + "' cy='" + place.substr(place.find(' ') + 1) +
               "' r='3.2'/>\n";
  }
  for (std::size_t i = 0; i < points.size(); ++i) {
    const auto [x, y] = places[i];
    if (std::isnan(x) || points[i].name.empty()) {
      continue;
    }
    const std::string name = Escaped(points[i].name);
    const bool room = x + 6 + Letters(points[i].name) * LetterWidth < frame.left + Width;
    (room && labels.Add(x + 6, y + 3.5, "start", name)) || labels.Add(x - 6, y + 3.5, "end", name) ||
        labels.Add(x, y - 6, "middle", name) || labels.Add(x, y + 14, "middle", name);
  }
  svg += "<g fill='#fff' stroke='#111' stroke-width='1.5'>\n" + circles + "</g>\n" + labels.Svg();
  return outside;
}

}  // namespace latigo::picture
