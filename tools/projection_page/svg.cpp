#include "svg.h"

#include <cmath>
#include <cstdlib>
#include <map>
#include <sstream>
#include <vector>

namespace latigo::page {

namespace {

// A colour and its meaning: values below a limit, if no earlier row matches; or a code.
struct Class {
  double below;
  std::int32_t code;
  const char* fill;
  const char* words;
};

constexpr double Any = 1e300;

constexpr Class ClosureClasses[] = {
    {1e-3, 0, "#fcffd2", "below 0.001 mm"},  //
    {1e-2, 0, "#f6e27a", "below 0.01 mm"},  {1e-1, 0, "#fbbc3a", "below 0.1 mm"}, {1e+0, 0, "#f58c1f", "below 1 mm"},
    {1e+1, 0, "#e25b34", "below 10 mm"},    {1e+2, 0, "#bc3754", "below 0.1 m"},  {1e+3, 0, "#932667", "below 1 m"},
    {1e+4, 0, "#65156e", "below 10 m"},     {1e+6, 0, "#390963", "below 1 km"},   {Any, 0, "#100a2c", "1 km or more"},
    {Any, 6, "url(#code6)", "code 6"},      {Any, 10, "url(#code10)", "code 10"}, {Any, 11, "url(#code11)", "code 11"},
    {Any, NotANumber, "url(#none)", "NaN"},
};

constexpr Class ScaleClasses[] = {
    {-1e5, 0, "#041c40", "below −100 000"},   {-1e4, 0, "#0b4a94", "−100 000 to −10 000"},
    {-1e3, 0, "#2f82c3", "−10 000 to −1000"}, {-1e2, 0, "#6baed6", "−1000 to −100"},
    {-1e1, 0, "#b5d3e7", "−100 to −10"},      {0, 0, "#e3eef8", "−10 to 0"},
    {1e1, 0, "#fee9dc", "0 to 10"},           {1e2, 0, "#fcbba1", "10 to 100"},
    {1e3, 0, "#fb7a57", "100 to 1000"},       {1e4, 0, "#de2d26", "1000 to 10 000"},
    {1e5, 0, "#a50f15", "10 000 to 100 000"}, {Any, 0, "#4a0009", "100 000 or more"},
    {Any, 6, "url(#code6)", "code 6"},        {Any, 10, "url(#code10)", "code 10"},
    {Any, 11, "url(#code11)", "code 11"},     {Any, NotANumber, "url(#none)", "NaN"},
};

// Pixels.
constexpr int Cell = 4;
constexpr int Columns = 72;
constexpr int Rows = 60;
constexpr int Top = 66;
constexpr int Bottom = Top + Rows * Cell;
constexpr int LeftPanel = 62;
constexpr int RightPanel = 540;
constexpr int PictureWidth = 1010;
constexpr int PictureHeight = Bottom + 50;

constexpr const char* Head =
    R"( font-family='sans-serif' font-size='12' fill='#222'>
<defs>
<pattern id='code6' width='6' height='6' patternUnits='userSpaceOnUse'>)"
    R"(<path fill='#ccc' d='M0 0h6v6h-6z'/><path fill='#555' d='M0 0h2v6h-2z'/></pattern>
<pattern id='code10' width='6' height='6' patternUnits='userSpaceOnUse'>)"
    R"(<path fill='#ccc' d='M0 0h6v6h-6z'/><path stroke='#555' d='M0 6L6 0'/></pattern>
<pattern id='code11' width='6' height='6' patternUnits='userSpaceOnUse'>)"
    R"(<path fill='#ccc' d='M0 0h6v6h-6z'/><path stroke='#555' d='M0 0L6 6'/></pattern>
<pattern id='none' width='6' height='6' patternUnits='userSpaceOnUse'>)"
    R"(<path fill='#ccc' d='M0 0h6v6h-6z'/><path fill='#555' d='M0 0h6v2h-6z'/></pattern>
</defs>
)";

// The class of a result.
template <std::size_t Count>
std::size_t ClassOf(const Class (&classes)[Count], const Outcome& outcome) {
  for (std::size_t i = 0; i < Count; ++i) {
    if (classes[i].code == outcome.code && (outcome.code != 0 || outcome.value < classes[i].below)) {
      return i;
    }
  }
  return Count - 1;
}

std::string Degrees(int d) {
  return (d < 0 ? "−" : "") + std::to_string(std::abs(d)) + "°";
}

void Text(std::ostream& svg, int x, int y, const char* more, const std::string& words) {
  svg << "<text x='" << x << "' y='" << y << "'" << more << ">" << words << "</text>\n";
}

// At most eight round degrees between two limits.
std::vector<int> Ticks(double from, double to) {
  std::vector<int> ticks;
  for (const int step : {1, 2, 5, 10, 20, 60}) {
    if ((to - from) / step > 8) {
      continue;
    }
    for (int d = static_cast<int>(std::ceil(from / step)) * step; d <= to; d += step) {
      ticks.push_back(d);
    }
    return ticks;
  }
  return ticks;
}

// The frame of a panel, labelled in degrees; longitudes from -180 to 180.
void Axes(std::ostream& svg, int left, const Area& area) {
  const auto& [south, north, west, east] = area;
  constexpr int Width = Columns * Cell;
  constexpr int Height = Rows * Cell;
  std::ostringstream ticks;
  for (const int d : Ticks(west, east)) {
    const int x = left + static_cast<int>(std::lround((d - west) / (east - west) * Width));
    ticks << "M" << x << " " << Bottom << "v5";
    Text(svg, x, Bottom + 18, " text-anchor='middle'", Degrees(d > 180 ? d - 360 : d));
  }
  for (const int d : Ticks(south, north)) {
    const int y = Bottom - static_cast<int>(std::lround((d - south) / (north - south) * Height));
    ticks << "M" << left << " " << y << "h-5";
    Text(svg, left - 8, y + 4, " text-anchor='end'", Degrees(d));
  }
  svg << "<path fill='none' stroke='#222' d='M" << left << " " << Top << "h" << Width << "v" << Height << "h-" << Width
      << "z" << ticks.str() << "'/>\n";
  Text(svg, left + Width / 2, Bottom + 36, " text-anchor='middle'", "longitude");
  svg << "<text transform='translate(" << left - 46 << " " << Top + Height / 2
      << ") rotate(-90)' text-anchor='middle'>latitude</text>\n";
}

// Cells, coloured by the result at their middle, and a legend of the colours used.
template <std::size_t Count, typename Measured>
void Panel(std::ostream& svg, int left, const char* title, const Area& area, const Class (&classes)[Count],
           const Measured& measured) {
  std::map<std::size_t, std::string> paths;
  for (int row = 0; row < Rows; ++row) {
    const auto classAt = [&, row](int column) {
      const auto& [south, north, west, east] = area;
      return ClassOf(classes, measured(Position{north - (north - south) * (row + 0.5) / Rows,
                                                west + (east - west) * (column + 0.5) / Columns}));
    };
    std::size_t now = classAt(0);
    for (int column = 0; column < Columns;) {
      const int start = column;
      const std::size_t kind = now;
      while (++column < Columns && (now = classAt(column)) == kind) {
      }
      paths[kind] += "M" + std::to_string(left + start * Cell) + " " + std::to_string(Top + row * Cell + Cell / 2) +
                     "h" + std::to_string((column - start) * Cell);
    }
  }
  Text(svg, left, Top - 10, " font-weight='bold'", title);
  int y = Top;
  for (const auto& [kind, path] : paths) {
    const int x = left + Columns * Cell + 12;
    svg << "<path stroke-width='" << Cell << "' stroke='" << classes[kind].fill << "' d='" << path << "'/>\n"
        << "<rect x='" << x << "' y='" << y << "' width='14' height='14' stroke='#888' fill='" << classes[kind].fill
        << "'/>\n";
    Text(svg, x + 20, y + 12, "", classes[kind].words);
    y += 20;
  }
  Axes(svg, left, area);
}

// The factor is exactly 1 all along the diagonal of the area.
bool ScaleIsConstant(const System& system, const Grid& grid) {
  const auto& [south, north, west, east] = system.area;
  for (int i = 0; i <= Rows; ++i) {
    const double along = static_cast<double>(i) / Rows;
    const auto [value, code] = grid.ScaleExcess({south + (north - south) * along, west + (east - west) * along});
    if (value != 0 || code != 0) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::string Picture(const System& system, const Grid& grid) {
  std::ostringstream svg;
  svg << "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 " << PictureWidth << " " << PictureHeight << "'" << Head
      << "<rect width='" << PictureWidth << "' height='" << PictureHeight << "' fill='#fff'/>\n";
  Text(svg, 16, 26, " font-size='16' font-weight='bold'",
       "Kind " + std::to_string(system.params.Kind) + ", " + system.projection + ": " + system.name);
  Panel(svg, LeftPanel, "Closure error, forward and inverse", system.area, ClosureClasses,
        [&](Position position) { return grid.Closure(position); });
  if (ScaleIsConstant(system, grid)) {
    Text(svg, RightPanel, Top + 60, "", "For this kind Scale returns 1 everywhere,");
    Text(svg, RightPanel, Top + 78, "", "not the true point scale factor.");
  } else {
    Panel(svg, RightPanel, "Point scale factor k: (k − 1), parts per million", system.area, ScaleClasses,
          [&](Position position) { return grid.ScaleExcess(position); });
  }
  svg << "</svg>\n";
  return svg.str();
}

}  // namespace latigo::page
