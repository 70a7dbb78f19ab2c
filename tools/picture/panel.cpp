#include "panel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <map>
#include <sstream>

namespace latigo::picture {

namespace {

constexpr double Any = 1e300;

// Pixels.
constexpr int FontSize = 12;
constexpr int LabelGap = 8;  // between the labels of an axis, and from the left axis to its labels
constexpr int LeastMargin = 62;
constexpr int TitleHeight = 16;
constexpr int LegendOffset = 12;  // of the legend from the cells, of its words from their colours, and of its rows
constexpr int WordsOffset = 20;
constexpr int RowOffset = 20;
constexpr int LegendBox = 14;

const Class Closures[] = {
    {1e-3, 0, "#fcffd2", "below 0.001 mm"},  //
    {1e-2, 0, "#f6e27a", "below 0.01 mm"},  {1e-1, 0, "#fbbc3a", "below 0.1 mm"}, {1e+0, 0, "#f58c1f", "below 1 mm"},
    {1e+1, 0, "#e25b34", "below 10 mm"},    {1e+2, 0, "#bc3754", "below 0.1 m"},  {1e+3, 0, "#932667", "below 1 m"},
    {1e+4, 0, "#65156e", "below 10 m"},     {1e+6, 0, "#390963", "below 1 km"},   {Any, 0, "#100a2c", "1 km or more"},
    {Any, 6, "url(#code6)", "code 6"},      {Any, 10, "url(#code10)", "code 10"}, {Any, 11, "url(#code11)", "code 11"},
    {Any, NotANumber, "url(#none)", "NaN"},
};

const Class Scales[] = {
    {-1e5, 0, "#041c40", "below −100 000"},   {-1e4, 0, "#0b4a94", "−100 000 to −10 000"},
    {-1e3, 0, "#2f82c3", "−10 000 to −1000"}, {-1e2, 0, "#6baed6", "−1000 to −100"},
    {-1e1, 0, "#b5d3e7", "−100 to −10"},      {0, 0, "#e3eef8", "−10 to 0"},
    {1e1, 0, "#fee9dc", "0 to 10"},           {1e2, 0, "#fcbba1", "10 to 100"},
    {1e3, 0, "#fb7a57", "100 to 1000"},       {1e4, 0, "#de2d26", "1000 to 10 000"},
    {1e5, 0, "#a50f15", "10 000 to 100 000"}, {Any, 0, "#4a0009", "100 000 or more"},
    {Any, 6, "url(#code6)", "code 6"},        {Any, 10, "url(#code10)", "code 10"},
    {Any, 11, "url(#code11)", "code 11"},     {Any, NotANumber, "url(#none)", "NaN"},
};

// Colours from light to dark: of negative and of positive values, and of values of one sign.
constexpr std::array<std::array<int, 3>, 3> Cold = {{{0xe3, 0xee, 0xf8}, {0x6b, 0xae, 0xd6}, {0x0b, 0x4a, 0x94}}};
constexpr std::array<std::array<int, 3>, 3> Warm = {{{0xfe, 0xe9, 0xdc}, {0xfb, 0x7a, 0x57}, {0xa5, 0x0f, 0x15}}};
constexpr std::array<std::array<int, 3>, 3> OneSign = {{{0xfc, 0xff, 0xd2}, {0xf5, 0x8c, 0x1f}, {0x65, 0x15, 0x6e}}};

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

// A colour of a scale of three, part from 0 to 1.
std::string Colour(const std::array<std::array<int, 3>, 3>& scale, double part) {
  const double at = std::clamp(part, 0.0, 1.0) * 2;
  const std::size_t from = at < 1 ? 0 : 1;
  const double rest = at - static_cast<double>(from);
  std::string text = "#";
  for (std::size_t i = 0; i < 3; ++i) {
    char hex[8];
    std::snprintf(hex, sizeof hex, "%02x",
                  static_cast<unsigned>(std::lround(scale[from][i] * (1 - rest) + scale[from + 1][i] * rest)));
    text += hex;
  }
  return text;
}

// The class of a result.
std::size_t ClassOf(std::span<const Class> classes, const Outcome& outcome) {
  for (std::size_t i = 0; i < classes.size(); ++i) {
    if (classes[i].code == outcome.code && (outcome.code != 0 || outcome.value < classes[i].below)) {
      return i;
    }
  }
  return classes.size() - 1;
}

struct Tick {
  double at;
  std::string label;
};

// Round numbers between two limits, at most eight, on an axis on which their labels are side by side.
std::vector<Tick> TicksOf(double from, double to, double pixels) {
  std::vector<Tick> ticks;
  for (const double step : {0.00001, 0.00002, 0.00005, 0.0001, 0.0002, 0.0005, 0.001, 0.002, 0.005, 0.01, 0.02,
                            0.05,    0.1,     0.2,     0.5,    1.0,    2.0,    5.0,   10.0,  20.0,  30.0, 60.0}) {
    if ((to - from) / step > 8) {
      continue;
    }
    ticks.clear();
    double widest = 0;
    for (double i = std::ceil(from / step - 1e-7); i * step <= to + 1e-7 * step; ++i) {
      const double at = i * step;
      ticks.push_back({at, Number(at > 180 ? at - 360 : at < -180 ? at + 360 : at, step) + "°"});
      widest = std::max(widest, TextWidth(ticks.back().label, FontSize));
    }
    if (widest + LabelGap <= pixels * step / (to - from)) {
      break;
    }
  }
  return ticks;
}

// From the left axis to the base line of its title, beyond the labels.
int TitleOffset(const std::vector<Tick>& ticks) {
  double offset = 46;
  for (const Tick& tick : ticks) {
    offset = std::max(offset, LabelGap + 5 + TextWidth(tick.label, FontSize));
  }
  return static_cast<int>(std::ceil(offset));
}

// The frame of a panel, labelled in degrees; longitudes from -180 to 180.
void Axes(std::ostream& svg, const Frame& frame) {
  const int width = Columns * Cell;
  const int height = frame.rows * Cell;
  const auto& [south, north, west, east] = frame.area;
  std::ostringstream marks;
  for (const Tick& tick : TicksOf(west, east, width)) {
    const int x = static_cast<int>(std::lround(frame.X(tick.at)));
    marks << "M" << x << " " << frame.Bottom() << "v5";
    Text(svg, x, frame.Bottom() + 18, " text-anchor='middle'", tick.label);
  }
  const std::vector<Tick> latitudes = TicksOf(south, north, Any);
  for (const Tick& tick : latitudes) {
    const int y = frame.Bottom() - static_cast<int>(std::lround((tick.at - south) / (north - south) * height));
    marks << "M" << frame.left << " " << y << "h-5";
    Text(svg, frame.left - LabelGap, y + 4, " text-anchor='end'", tick.label);
  }
  svg << "<path fill='none' stroke='#222' d='M" << frame.left << " " << frame.top << "h" << width << "v" << height
      << "h-" << width << "z" << marks.str() << "'/>\n";
  Text(svg, frame.left + width / 2, frame.Bottom() + 36, " text-anchor='middle'", "longitude");
  svg << "<text transform='translate(" << frame.left - TitleOffset(latitudes) << " " << frame.top + height / 2
      << ") rotate(-90)' text-anchor='middle'>latitude</text>\n";
}

}  // namespace

std::string Number(double value, double step) {
  const int decimals = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
  char text[40];
  std::snprintf(text, sizeof text, "%.*f", decimals, std::fabs(value));
  return (value <= -step / 2 ? "−" : "") + std::string(text);
}

double TextWidth(std::string_view text, int size) {
  constexpr double Letter = 0.585;  // of the size; digits of a wide font have 0.64, and points and blanks less
  const auto letters =
      std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xc0U) != 0x80; });
  return static_cast<double>(letters) * Letter * size;
}

int LeftMargin(const Area& area) {
  return std::max(LeastMargin, TitleOffset(TicksOf(area.south, area.north, Any)) + TitleHeight);
}

int RightMargin(std::span<const Class> classes, const std::vector<Outcome>& outcomes) {
  double widest = 0;
  for (const Outcome& each : outcomes) {
    widest = std::max(widest, TextWidth(classes[ClassOf(classes, each)].words, FontSize));
  }
  return LegendOffset + WordsOffset + static_cast<int>(std::ceil(widest));
}

void TakeFailures(const std::vector<Outcome>& failed, std::vector<Outcome>& outcomes) {
  for (std::size_t i = 0; i < failed.size(); ++i) {
    outcomes[i] = failed[i].code != 0 ? failed[i] : outcomes[i];
  }
}

std::span<const Class> ClosureClasses() {
  return Closures;
}

std::span<const Class> ScaleClasses() {
  return Scales;
}

std::vector<Class> LinearClasses(double low, double high, double least) {
  std::vector<Class> classes;
  if (high - low < least) {
    classes.push_back({Any, 0, Colour(OneSign, 0), "about " + Number(std::round(low / least) * least, least)});
  } else if (low <= high) {
    const double range = high - low;
    double step = std::pow(10, std::floor(std::log10(range / 8)));
    for (const double factor : {2.0, 2.5, 2.0}) {  // 1, 2, 5, 10
      step *= range / step > 10 ? factor : 1;
    }
    const double first = std::floor(low / step);
    const double end = std::floor(high / step) + 1;
    for (double i = first; i < end; ++i) {
      const double middle = i + 0.5;
      const bool both = first < 0 && end > 0;
      const double most = std::max(-first, end);
      const std::string fill = !both        ? Colour(OneSign, (middle - first) / (end - first))
                               : middle < 0 ? Colour(Cold, -middle / most)
                                            : Colour(Warm, middle / most);
      classes.push_back({(i + 1) * step, 0, fill, Number(i * step, step) + " to " + Number((i + 1) * step, step)});
    }
    classes.back().below = Any;
  }
  for (const Class& each : Scales) {
    if (each.code != 0) {
      classes.push_back(each);
    }
  }
  classes.insert(classes.end() - 1, {Any, 8, "url(#none)", "outside the grid file"});
  return classes;
}

std::vector<Outcome> MeasureCells(const Area& area, int rows, const Measured& measured) {
  const auto& [south, north, west, east] = area;
  std::vector<Outcome> outcomes;
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < Columns; ++column) {
      outcomes.push_back(
          measured({north - (north - south) * (row + 0.5) / rows, west + (east - west) * (column + 0.5) / Columns}));
    }
  }
  return outcomes;
}

void Begin(std::ostream& svg, int width, int height, const std::string& title) {
  svg << "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 " << width << " " << height << "'" << Head
      << "<rect width='" << width << "' height='" << height << "' fill='#fff'/>\n";
  Text(svg, 16, 26, " font-size='16' font-weight='bold'", title);
}

void Text(std::ostream& svg, int x, int y, const char* attributes, const std::string& words) {
  svg << "<text x='" << x << "' y='" << y << "'" << attributes << ">" << words << "</text>\n";
}

void Panel(std::ostream& svg, const Frame& frame, const std::string& title, std::span<const Class> classes,
           const std::vector<Outcome>& outcomes, const std::string& over) {
  std::map<std::size_t, std::string> paths;
  for (int row = 0; row < frame.rows; ++row) {
    const auto classAt = [&, row](int column) {
      return ClassOf(classes, outcomes[static_cast<std::size_t>(row * Columns + column)]);
    };
    for (int column = 0; column < Columns;) {
      const int start = column;
      const std::size_t kind = classAt(column);
      while (++column < Columns && classAt(column) == kind) {
      }
      paths[kind] += "M" + std::to_string(frame.left + start * Cell) + " " +
                     std::to_string(frame.top + row * Cell + Cell / 2) + "h" + std::to_string((column - start) * Cell);
    }
  }
  Text(svg, frame.left, frame.top - 10, " font-weight='bold'", title);
  // A long legend is closer, so that it ends above the longitudes.
  const int rowOffset = std::min(RowOffset, frame.rows * Cell / std::max(static_cast<int>(paths.size()), 1));
  const int box = std::min(LegendBox, rowOffset - 2);
  int y = frame.top;
  for (const auto& [kind, path] : paths) {
    const int x = frame.left + Columns * Cell + LegendOffset;
    svg << "<path stroke-width='" << Cell << "' stroke='" << classes[kind].fill << "' d='" << path << "'/>\n"
        << "<rect x='" << x << "' y='" << y << "' width='14' height='" << box << "' stroke='#888' fill='"
        << classes[kind].fill << "'/>\n";
    Text(svg, x + WordsOffset, y + box - 2, "", classes[kind].words);
    y += rowOffset;
  }
  svg << over;
  Axes(svg, frame);
}

std::string Escaped(const std::string& text) {
  std::string safe;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const std::size_t more = byte < 0x80   ? 0
                             : byte < 0xc2 ? 9
                             : byte < 0xe0 ? 1
                             : byte < 0xf0 ? 2
                             : byte < 0xf5 ? 3
                                           : 9;
    bool whole = more < 9 && i + more < text.size() && (more > 0 || (byte >= 0x20 && byte != 0x7f));
    for (std::size_t j = 1; whole && j <= more; ++j) {
      whole = (static_cast<unsigned char>(text[i + j]) & 0xc0U) == 0x80;
    }
    if (!whole) {
      safe += '?';
    } else if (byte == '<' || byte == '>' || byte == '&' || byte == '\'') {
      safe += "&#" + std::to_string(byte) + ";";
    } else {
      safe.append(text, i, more + 1);
      i += more;
    }
  }
  return safe;
}

}  // namespace latigo::picture
