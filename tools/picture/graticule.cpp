#include "graticule.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>

namespace latigo::picture {

namespace {

constexpr double LinesOverArea = 4;
constexpr double MostCrossings = 3;  // of lines through a cell; more are a jump of the coordinates

// Pixels.
constexpr int Width = Columns * Cell;
constexpr int LabelSize = 10;
constexpr double LabelHeight = 11;
constexpr double Radius = 3.2;  // of a point

constexpr const char* LabelStyle =
    "font-size='10' stroke='#fff' stroke-width='3' stroke-linejoin='round' paint-order='stroke'";

bool Overlap(const Box& a, const Box& b) {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// The places of a name beside its point, the best first.
constexpr struct {
  double x, y;  // of the anchor, from the point
  const char* anchor;
} NamePlaces[] = {{6, 3.5, "start"}, {-6, 3.5, "end"}, {0, -6, "middle"}, {0, 14, "middle"},
                  {4, -4, "start"},  {4, 13, "start"}, {-4, -4, "end"},   {-4, 13, "end"}};

bool Inside(const Box& a, const Box& b) {
  return a.left >= b.left && a.right <= b.right && a.top >= b.top && a.bottom <= b.bottom;
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

struct Place {
  double x, y;  // pixels
};

// Adds the line of a value: a segment for each cell that it crosses. Returns their ends.
std::vector<Place> AddLine(const Frame& frame, const Corners& corners, double step, double level, std::string& path) {
  std::vector<Place> line;
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
      std::vector<Place> ends;
      if (Crosses(nw, ne, level, part)) {
        ends.push_back({x + part * Cell, y});
      }
      if (Crosses(ne, se, level, part)) {
        ends.push_back({x + Cell, y + part * Cell});
      }
      if (Crosses(sw, se, level, part)) {
        ends.push_back({x + part * Cell, y + Cell});
      }
      if (Crosses(nw, sw, level, part)) {
        ends.push_back({x, y + part * Cell});
      }
      for (std::size_t i = 0; i + 1 < ends.size(); i += 2) {
        path += "M" + Pixels(ends[i].x, ends[i].y) + "L" + Pixels(ends[i + 1].x, ends[i + 1].y);
      }
      line.insert(line.end(), ends.begin(), ends.end());
    }
  }
  return line;
}

struct Edge {
  bool horizontal;
  bool last;  // lower or right
};

constexpr Edge Edges[] = {{true, false}, {true, true}, {false, true}, {false, false}};

// Where a line meets an edge: pixels along it. An edge suits the direction of a line that crosses it steeply.
struct Crossing {
  Edge edge;
  double along;
  bool suits;
};

// All crossings of a line with the edges.
std::vector<Crossing> CrossingsOf(const Frame& frame, const Corners& corners, double step, double level) {
  std::vector<Crossing> crossings;
  for (const Edge& edge : Edges) {
    const int cells = edge.horizontal ? Columns : frame.rows;
    const int depth = edge.horizontal ? frame.rows : Columns;
    const auto at = [&](int i, int inwards) {
      const int other = edge.last ? depth - inwards : inwards;
      return edge.horizontal ? corners.At(other, i) : corners.At(i, other);
    };
    for (int i = 0; i < cells; ++i) {
      const double change = std::fabs(at(i + 1, 0) - at(i, 0));
      double part = 0;
      if (change <= MostCrossings * step && Crosses(at(i, 0), at(i + 1, 0), level, part)) {
        crossings.push_back({edge, (i + part) * Cell, change >= std::fabs(at(i, 1) - at(i, 0))});
      }
    }
  }
  return crossings;
}

class Labels {
 public:
  explicit Labels(const Frame& frame)
      : limits_{static_cast<double>(frame.left), static_cast<double>(frame.top),
                static_cast<double>(frame.left + Width), static_cast<double>(frame.Bottom())} {}

  // Adds a text, in XML, if it is inside the frame and covers no earlier one. `anchor` is start, middle or end; y is of
  // the base line.
  bool Add(double x, double y, const char* anchor, const std::string& text, double width) {
    const double left = *anchor == 's' ? x : *anchor == 'm' ? x - width / 2 : x - width;
    const Box box{left - 2, y - LabelHeight + 2, left + width + 2, y + 2};
    if (!Inside(box, limits_) ||
        std::any_of(boxes_.begin(), boxes_.end(), [&](const Box& other) { return Overlap(box, other); })) {
      return false;
    }
    boxes_.push_back(box);
    const std::string place = Pixels(x, y);
    svg_ += "<text x='" + place.substr(0, place.find(' ')) + "' y='" + place.substr(place.find(' ') + 1) +
            "' text-anchor='" + anchor + "'>" + text + "</text>\n";
    return true;
  }
  void Block(const Box& box) { boxes_.push_back(box); }
  const std::vector<Box>& Boxes() const { return boxes_; }
  std::string Svg() const { return std::string("<g ") + LabelStyle + ">\n" + svg_ + "</g>\n"; }

 private:
  Box limits_;
  std::vector<Box> boxes_;
  std::string svg_;
};

// Adds a value at the crossing of its line, inside the frame, if there is room at the edge or beside that place.
bool AddValue(const Frame& frame, const Crossing& crossing, const std::string& text, Labels& labels) {
  const auto& [edge, along, suits] = crossing;
  const double width = TextWidth(text, LabelSize);
  const double top = frame.top;
  if (edge.horizontal) {
    const double x = frame.left + std::clamp(along, width / 2 + 3, Width - width / 2 - 3);
    const double y = edge.last ? frame.Bottom() - 5 : top + LabelHeight;
    const double inwards = edge.last ? -LabelHeight - 3 : LabelHeight + 3;
    return labels.Add(x, y, "middle", text, width) || (suits && labels.Add(x, y + inwards, "middle", text, width));
  }
  const double x = edge.last ? frame.left + Width - 3 : frame.left + 3;
  const char* const anchor = edge.last ? "end" : "start";
  return labels.Add(x, top + std::max(along - 2, LabelHeight), anchor, text, width) ||
         labels.Add(x, top + along + LabelHeight, anchor, text, width);
}

// The lines of one coordinate, with their values at an edge that suits their direction, or else at any edge, or else
// where there is room.
void AddLines(const Frame& frame, const Corners& corners, double step, char letter, std::string& path, Labels& labels) {
  double low = NAN;
  double high = NAN;
  for (const double value : corners.values) {
    low = std::fmin(low, value);
    high = std::fmax(high, value);
  }
  constexpr double MostLines = 200;  // where a few coordinates are huge
  const double first = std::ceil(low / step);
  for (double i = first; i * step <= high && i < first + MostLines; ++i) {
    const std::vector<Place> line = AddLine(frame, corners, step, i * step, path);
    const std::string text = Grouped(i * step, step) + " " + letter;
    std::vector<Crossing> crossings = CrossingsOf(frame, corners, step, i * step);
    std::stable_partition(crossings.begin(), crossings.end(), [](const Crossing& each) { return each.suits; });
    const auto atEdge = [&](const Crossing& each) { return AddValue(frame, each, text, labels); };
    const auto onLine = [&](const Place& place) {
      const double width = TextWidth(text, LabelSize);
      return labels.Add(place.x, place.y + 3.5, "middle", text, width) ||
             labels.Add(place.x, place.y + LabelHeight, "middle", text, width);
    };
    bool labelled = std::any_of(crossings.begin(), crossings.end(), atEdge);
    for (std::size_t j = 0; j < line.size() && !labelled; ++j) {
      labelled = onLine(line[j]);
    }
  }
}

// The place of a point inside the area.
std::optional<Place> PlaceOf(const Frame& frame, const Position& at) {
  const auto& [south, north, west, east] = frame.area;
  const double longitude = at.longitude + (at.longitude < west ? 360 : at.longitude > east ? -360 : 0);
  if (!(at.latitude >= south && at.latitude <= north && longitude >= west && longitude <= east)) {
    return std::nullopt;
  }
  return Place{frame.X(longitude), frame.Y(at.latitude)};
}

Box CircleAt(const Place& place) {
  return {place.x - Radius, place.y - Radius, place.x + Radius, place.y + Radius};
}

}  // namespace

std::string Grouped(double value, double step) {
  const std::string all = Number(std::fabs(value), step);
  const std::size_t whole = std::min(all.find('.'), all.size());
  std::string text;
  for (std::size_t i = 0; i < all.size(); ++i) {
    text += (i > 0 && i < whole && (whole - i) % 3 == 0 ? "\u2009" : "") + std::string(1, all[i]);
  }
  return (value <= -step / 2 ? "−" : "") + text;
}

GridLines DrawGridLines(const Frame& frame, const Forward& forward, char letterX, char letterY,
                        const std::vector<NamedPoint>& points) {
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
  Labels labels(frame);
  for (const NamedPoint& point : points) {
    if (const std::optional<Place> place = PlaceOf(frame, point.at); place) {
      labels.Block(CircleAt(*place));
    }
  }
  if (lines.stepX > 0) {
    AddLines(frame, eastings, lines.stepX, letterX, path, labels);
  }
  if (lines.stepY > 0) {
    AddLines(frame, northings, lines.stepY, letterY, path, labels);
  }
  // A light line below the dark one, since cells may be dark.
  lines.svg = "<path fill='none' stroke='#fff' stroke-opacity='0.6' stroke-width='2.2' d='" + path +
              "'/>\n<path fill='none' stroke='#222' stroke-opacity='0.8' stroke-width='0.8' d='" + path + "'/>\n" +
              labels.Svg();
  lines.labels = labels.Boxes();
  return lines;
}

DrawnPoints DrawPoints(const Frame& frame, const std::vector<NamedPoint>& points, const std::vector<Box>& covered) {
  DrawnPoints drawn;
  std::string circles;
  Labels labels(frame);
  for (const Box& box : covered) {
    labels.Block(box);
  }
  std::vector<std::optional<Place>> places;
  for (std::size_t i = 0; i < points.size(); ++i) {
    places.push_back(PlaceOf(frame, points[i].at));
    if (!places.back()) {
      drawn.outside.push_back(i);
      continue;
    }
    labels.Block(CircleAt(*places.back()));
    const std::string place = Pixels(places.back()->x, places.back()->y);
    circles += "<circle cx='" + place.substr(0, place.find(' ')) + "' cy='" + place.substr(place.find(' ') + 1) +
               "' r='3.2'/>\n";
  }
  for (std::size_t i = 0; i < points.size(); ++i) {
    if (!places[i] || points[i].name.empty()) {
      continue;
    }
    const auto [x, y] = *places[i];
    const std::string name = Escaped(points[i].name);
    const double width = TextWidth(points[i].name, LabelSize);
    const double reach = width / 2 + 3;  // of a name above or below its point, which the frame's edges move aside
    const double middle = std::max(frame.left + reach, std::min(x, frame.left + Width - reach));
    const bool named = std::any_of(std::begin(NamePlaces), std::end(NamePlaces), [&, x = x, y = y](const auto& place) {
      return labels.Add(*place.anchor == 'm' ? middle : x + place.x, y + place.y, place.anchor, name, width);
    });
    drawn.unnamed += named ? 0 : 1;
  }
  drawn.svg = "<g fill='#fff' stroke='#111' stroke-width='1.5'>\n" + circles + "</g>\n" + labels.Svg();
  return drawn;
}

}  // namespace latigo::picture
