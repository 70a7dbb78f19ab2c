#include "map.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "coordinate_system.h"
#include "line_reader.h"
#include "operations.h"
#include "platform/ascii.h"
#include "progress.h"
#include "streams.h"
#include "table_reader.h"
#include "visible.h"

namespace latigo::cli {

namespace {

using picture::Outcome;

constexpr std::size_t PathSize = 512;
constexpr std::ptrdiff_t LongestName = 40;
constexpr int NoRoundTripIndex = std::countr_zero(static_cast<unsigned>(Doubt::NoRoundTrip));
constexpr std::int32_t OutsideGridFile = 8;  // the library's code for a geoid; here also for a datum grid
constexpr double MostLinear = 40000;         // parts per million: a wider range of scale has classes in powers of ten
constexpr double LeastOfUnit = 0.9, MostOfUnit = 1.1;  // of a local grid's scale that leaves the unit

// Pixels.
constexpr int Top = 108;
constexpr int PanelDistance = 482;  // from the cells of one panel to those of its neighbour, at least
constexpr int RightOfCells = 182;   // for title and legend, at least
constexpr int BelowPanel = 84;
constexpr int FewestRows = 48, MostRows = 100;

std::string_view Trimmed(std::string_view text, std::string_view what) {
  const std::size_t begin = text.find_first_not_of(what);
  return begin == std::string_view::npos ? std::string_view()
                                         : text.substr(begin, text.find_last_not_of(what) + 1 - begin);
}

// A name of at most LongestName characters of UTF-8, the last of which is an ellipsis if it is longer.
std::string Shortened(std::string_view name) {
  std::ptrdiff_t letters = 0;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < name.size(); ++i) {
    letters += (static_cast<unsigned char>(name[i]) & 0xc0U) != 0x80 ? 1 : 0;
    kept = letters < LongestName ? i + 1 : kept;
  }
  return letters <= LongestName ? std::string(name) : std::string(name.substr(0, kept)) + "…";
}

// The name of a point: the text after its coordinates, or after its height.
std::string NameOf(const PointLine& point) {
  const std::string blanks = std::string(" \t") + point.separator;
  std::string_view name = Trimmed(point.rest, blanks);
  if (name.empty()) {
    name = Trimmed(point.wholeThird ? point.restWithThird : std::string_view(), blanks);
  }
  if (point.separator != ' ') {
    name = Trimmed(name.substr(0, name.find(point.separator)), blanks);
  }
  const bool quoted = name.size() > 1 && name.starts_with('"') && name.find('"', 1) == name.size() - 1;
  return Shortened(quoted ? name.substr(1, name.size() - 2) : name);
}

// The file of points, for messages.
std::string FileName(const MapOptions& options) {
  return options.points == "-" ? "standard input" : options.points;
}

// "FILE:LINE: ", for messages.
std::string Place(const MapOptions& options, std::size_t line) {
  return FileName(options) + ":" + std::to_string(line) + ": ";
}

// A file of points and what is wrong in it, a message for each invalid point.
struct Points {
  std::vector<picture::NamedPoint> points;
  std::vector<std::size_t> lines;  // of the points
  std::vector<std::string> faults;
  std::vector<std::size_t> doubtful;  // points that do not convert there and back, the one doubt without a height
};

// Adds a point with its coordinates in the order of the options, checked as `forward` or `inverse` does; or its fault,
// with the text shown.
void AddPoint(const MapOptions& options, const Converter& converter, const PointLine& point, std::size_t line,
              std::string_view shown, const std::string& name, Points& read) {
  PointLine position;  // without a height
  position.first = point.first;
  position.second = point.second;
  Result result;
  (options.grid ? Inverse : Forward)(converter, position, result);
  const char* const reason = result.fault != nullptr ? result.fault : FaultOf(result);
  std::string fault = reason == nullptr ? "" : reason;
  if (result.function != nullptr) {
    fault = ErrorText(result.code, result.function);
  } else if (fault.empty() && result.doubts != 0 && options.strict) {
    fault = DoubtTexts[NoRoundTripIndex];
  }
  if (!fault.empty()) {
    read.faults.push_back(Place(options, line) + FaultText({fault.c_str(), 0, shown}));
    return;
  }
  if (result.doubts != 0) {
    read.doubtful.push_back(read.points.size());
  }
  if (options.grid) {
    position.first = result.values[0].value;
    position.second = result.values[1].value;
  }
  read.points.push_back({{position.first, position.second}, name});
  read.lines.push_back(line);
}

Points PointsOfTable(const MapOptions& options, const Converter& converter) {
  std::vector<Wanted> wanted = {{Role::Latitude, "latitude"}, {Role::Longitude, "longitude"}};
  if (options.grid) {
    wanted = {{Role::Number, "x"}, {Role::Number, "y"}};
  }
  const std::size_t first = options.lonlat && !options.grid ? 1 : 0;
  std::swap(wanted[0], wanted[first]);
  wanted.push_back({Role::Text, "name", true});
  const Table table = ReadTable(options.points, options.table, wanted);
  Points read;
  for (const LineFault& fault : table.faults) {
    read.faults.push_back(fault.text);
  }
  for (const Record& each : table.records) {
    PointLine point;
    point.first = each.values[first];
    point.second = each.values[1 - first];
    AddPoint(options, converter, point, each.line, each.texts[0] + " " + each.texts[1], Shortened(each.texts[2]), read);
  }
  return read;
}

Points PointsOfLines(const MapOptions& options, const Converter& converter) {
  const Order order = options.grid ? Order::Grid : options.lonlat ? Order::LongitudeLatitude : Order::LatitudeLongitude;
  Points read;
  BlockReader reader(options.points);
  Progress progress({options.points});
  for (Block block; reader.Next(block);) {
    if (block.cut) {
      read.faults.push_back(Place(options, block.firstLine) + "the line is too long");
      continue;
    }
    std::string_view text = block.bytes;
    std::size_t number = block.firstLine;
    for (std::string_view line; NextLine(text, line); ++number) {
      const bool returns = HasReturnInside(line);  // also of a comment, which would hide lines
      if (IsComment(line) && !returns) {
        continue;
      }
      const PointLine point = ParsePointLine(line, order, options.table.separation);
      if (returns) {
        read.faults.push_back(Place(options, number) + FaultText({ReturnInside, 0, line}));
      } else if (point.fault != nullptr && !point.badThird) {
        read.faults.push_back(Place(options, number) + FaultText({point.fault, point.faultColumn, point.faultText}));
      } else {
        AddPoint(options, converter, point, number, point.coordinates, NameOf(point), read);
      }
    }
    progress.Add(block.bytes.size(), number - block.firstLine);
  }
  return read;
}

// Prints the faults. Throws UsageError if there is no point.
Points ReadPoints(const MapOptions& options, const Converter& converter) {
  if (options.points.empty()) {
    return {};
  }
  Points read = options.table.Asked() ? PointsOfTable(options, converter) : PointsOfLines(options, converter);
  for (const std::string& fault : read.faults) {
    Message(fault);
  }
  if (read.points.empty()) {
    throw UsageError(FileName(options) + ": no points to draw");
  }
  return read;
}

// A measurement and its panel.
struct Theme {
  std::string title;
  std::vector<Outcome> outcomes;
  std::vector<picture::Class> classes;
};

// The lowest and highest values; low is above high without any.
std::pair<double, double> Limits(const std::vector<Outcome>& outcomes) {
  double low = INFINITY;
  double high = -INFINITY;
  for (const Outcome& each : outcomes) {
    if (each.code == 0) {
      low = std::min(low, each.value);
      high = std::max(high, each.value);
    }
  }
  return {low, high};
}

std::vector<picture::Class> Classes(std::span<const picture::Class> classes) {
  return {classes.begin(), classes.end()};
}

// The themes of a section, each measured in all cells.
class Themes {
 public:
  Themes(const PointOptions& options, const Converter& converter, const picture::Area& area, int rows)
      : options_(options), converter_(converter), measures_(converter.Handle()), area_(area), rows_(rows) {
    GeodesyParams params{};
    GetGeodesyParams(converter.Handle(), &params, nullptr, nullptr);
    centralMeridian_ = params.CentralMeridian / RadiansPerDegree;
  }

  std::vector<Theme> All() {
    Add("Closure error, forward and inverse", Classes(picture::ClosureClasses()),
        Cells([&](picture::Position at) { return measures_.Closure(at); }));
    AddScale();
    AddLinear("Convergence, degrees; grid north east of true north is positive", 1e-6,
              [&](picture::Position at) { return measures_.Convergence(at); });
    AddUndulation();
    AddShift();
    return std::move(themes_);
  }

  // Within half a turn of the central meridian, since not every projection wraps longitudes.
  picture::Position Wrapped(picture::Position at) const {
    return {at.latitude, centralMeridian_ + std::remainder(at.longitude - centralMeridian_, 360)};
  }

 private:
  std::vector<Outcome> Cells(const picture::Measured& measured) const {
    auto outcomes = MeasureCells(area_, rows_, [&](picture::Position at) { return measured(Wrapped(at)); });
    if (!themes_.empty()) {
      TakeFailures(themes_.front().outcomes, outcomes);
    }
    return outcomes;
  }

  void Add(const std::string& title, const std::vector<picture::Class>& classes, const std::vector<Outcome>& outcomes) {
    themes_.push_back({title, outcomes, classes});
  }

  void AddLinear(const std::string& title, double least, const picture::Measured& measured) {
    const std::vector<Outcome> outcomes = Cells(measured);
    const auto [low, high] = Limits(outcomes);
    Add(title, picture::LinearClasses(low, high, least), outcomes);
  }

  void AddScale() {
    const std::vector<Outcome> outcomes = Cells([&](picture::Position at) { return measures_.FactorExcess(at); });
    const auto [low, high] = Limits(outcomes);
    Add(measures_.FactorTitle(),
        high - low < MostLinear ? picture::LinearClasses(low, high, 1e-3) : Classes(picture::ScaleClasses()), outcomes);
  }

  void AddUndulation() {
    char path[PathSize] = "";
    if (GetGeoid(converter_.Handle(), path, sizeof path, nullptr) == 0 || path[0] == '\0') {
      return;
    }
    AddLinear("Geoid undulation, metres", 1e-3, [&](picture::Position at) -> Outcome {
      double undulation = 0;
      const bool known = Undulation(converter_.Handle(), at.latitude * RadiansPerDegree,
                                    std::remainder(at.longitude, 360) * RadiansPerDegree, &undulation) != 0;
      return {undulation, known ? 0 : OutsideGridFile};
    });
  }

  void AddShift() {
    char path[PathSize] = "";
    if (GetEllModel(converter_.Handle(), path, sizeof path) == 0 || path[0] == '\0') {
      return;
    }
    const Converter shifting(options_, {.shift = true});
    AddLinear("Datum shift from WGS-84, metres", 1e-3, [&](picture::Position at) -> Outcome {
      PointLine point;
      point.first = at.latitude;
      point.second = std::remainder(at.longitude, 360);
      Position shifted;
      Result result;
      if (!shifting.ReadGeographic(point, shifted, result)) {
        return {0, OutsideGridFile};
      }
      return {measures_.Distance(at, {shifted.latitude / RadiansPerDegree, shifted.longitude / RadiansPerDegree}), 0};
    });
  }

  const PointOptions& options_;
  const Converter& converter_;
  const picture::Measures measures_;
  const picture::Area area_;
  const int rows_;
  double centralMeridian_ = 0;
  std::vector<Theme> themes_;
};

// As many rows as make cells about square on the ground.
int RowsOf(const picture::Area& area) {
  const double middle = (area.south + area.north) / 2 * RadiansPerDegree;
  const double shape = (area.north - area.south) / ((area.east - area.west) * std::fmax(std::cos(middle), 0.2));
  return static_cast<int>(std::lround(
      std::clamp(picture::Columns * shape, static_cast<double>(FewestRows), static_cast<double>(MostRows))));
}

// The limits, with as many decimals as distinguish a thousandth of the shorter side, but no zeros at the end.
std::string LimitsInWords(const picture::Area& area) {
  const double shorter = std::min(area.north - area.south, area.east - area.west);
  const double step = std::pow(10, std::floor(std::log10(shorter)) - 3);
  const auto limit = [&](double value) {
    std::string text = picture::Number(value, step);
    if (text.find('.') != std::string::npos) {
      text.resize(text.find_last_not_of('0') + 1);
      text.resize(text.size() - (text.ends_with('.') ? 1 : 0));
    }
    return text + "°";
  };
  return limit(area.south) + " to " + limit(area.north) + " north, " + limit(area.west) + " to " + limit(area.east) +
         " east";
}

// A name of the section's unit or axis in English; empty without one.
std::string LocalName(const Converter& converter, std::int32_t request) {
  char name[64] = "";
  GetLocalName(converter.Handle(), request, "", name, sizeof name);
  return name;
}

// The unit of the coordinates, in XML.
std::string UnitOf(const Converter& converter) {
  const double scale = picture::UnitScale(converter.Handle());
  const std::string unit = LocalName(converter, LATIGO_NAME_UNIT_SHORT);
  return unit.empty() || scale < LeastOfUnit || scale > MostOfUnit ? "units" : picture::Escaped(unit);
}

// The first letter of an axis: E of easting.
char Capital(const std::string& axis) {
  return static_cast<char>(AsciiLower(axis.front()) - 'a' + 'A');
}

// The places of two panels side by side, and the width of the picture.
struct PanelColumns {
  int left[2];
  int width;
};

PanelColumns ColumnsOf(const picture::Area& area, const std::vector<Theme>& themes) {
  int right[] = {0, RightOfCells};
  for (std::size_t i = 0; i < themes.size(); ++i) {
    right[i % 2] = std::max(right[i % 2], picture::RightMargin(themes[i].classes, themes[i].outcomes));
  }
  constexpr int Cells = picture::Columns * picture::Cell;
  const int margin = picture::LeftMargin(area);
  const int second = margin + std::max(PanelDistance, Cells + right[0] + margin);
  return {{margin, second}, second + Cells + right[1]};
}

// Prints the first of some points, as a warning or as a failure, and how many there are.
void ReportPoints(const MapOptions& options, const Points& read, const std::vector<std::size_t>& which, bool warning,
                  const std::string& what) {
  if (which.empty()) {
    return;
  }
  const std::string& name = read.points[which.front()].name;
  Message(Place(options, read.lines[which.front()]) + (warning ? "warning: " : "") + what +
          (name.empty() ? "" : ": \"" + name + "\""));
  if (which.size() > 1) {
    Message(std::to_string(which.size()) + " points: " + what);
  }
}

// Prints which points are doubtful, and how many points and names are left out; returns whether that is a failure.
bool ReportPoints(const MapOptions& options, const Points& read, const picture::DrawnPoints& drawn) {
  ReportPoints(options, read, read.doubtful, true, DoubtTexts[NoRoundTripIndex]);
  if (drawn.unnamed > 0) {
    Message("there is no room for " + std::to_string(drawn.unnamed) + (drawn.unnamed == 1 ? " name" : " names"));
  }
  ReportPoints(options, read, drawn.outside, !options.strict, "outside the area");
  return options.strict && !drawn.outside.empty();
}

}  // namespace

int RunMap(const MapOptions& options) {
  CheckSection(options);
  const ConfigFile config(options.file);
  PointOptions pointOptions;
  static_cast<Options&>(pointOptions) = options;
  const Converter converter(pointOptions, {});
  const Points read = ReadPoints(options, converter);
  const MapArea area = AreaOf(options, config, converter, read.points);
  const int rows = RowsOf(area.limits);
  Themes measured(pointOptions, converter, area.limits, rows);
  const std::vector<Theme> themes = measured.All();
  if (std::all_of(themes[0].outcomes.begin(), themes[0].outcomes.end(), [](const Outcome& o) { return o.code != 0; })) {
    throw UsageError(options.file + " [" + options.section +
                     "]: no position of the area converts to the grid and back: " + LimitsInWords(area.limits));
  }

  // The lines and points are the same in all panels.
  const PanelColumns columns = ColumnsOf(area.limits, themes);
  const picture::Frame first{columns.left[0], Top, area.limits, rows};
  const auto forward = [&](picture::Position at, double& x, double& y) {
    const picture::Position wrapped = measured.Wrapped(at);
    return GeoXY(converter.Handle(), &x, &y, wrapped.latitude * RadiansPerDegree,
                 wrapped.longitude * RadiansPerDegree) != 0;
  };
  const std::string axes[] = {LocalName(converter, LATIGO_NAME_FIRST_AXIS),
                              LocalName(converter, LATIGO_NAME_SECOND_AXIS)};
  const picture::GridLines lines = DrawGridLines(first, forward, Capital(axes[0]), Capital(axes[1]), read.points);
  const picture::DrawnPoints drawn = DrawPoints(first, read.points, lines.labels);
  const bool incomplete = ReportPoints(options, read, drawn);

  const int panelHeight = rows * picture::Cell + BelowPanel;
  const int panelRows = static_cast<int>(themes.size() + 1) / 2;
  std::ostringstream svg;
  picture::Begin(svg, columns.width, Top + panelRows * panelHeight - BelowPanel + 50,
                 picture::Escaped(options.section));
  picture::Text(svg, 16, 46, "", LimitsInWords(area.limits) + ": the area " + area.source + ".");
  if (lines.stepX > 0 && lines.stepY > 0) {
    const std::string of = " " + UnitOf(converter) + " of ";
    picture::Text(svg, 16, 64, "",
                  "Grid lines: every " + picture::Grouped(lines.stepX, lines.stepX) + of + axes[0] + ", " +
                      picture::Grouped(lines.stepY, lines.stepY) + of + axes[1] + ".");
  }
  svg << "<defs><g id='over'>\n" << lines.svg << drawn.svg << "</g></defs>\n";
  for (std::size_t i = 0; i < themes.size(); ++i) {
    const picture::Frame frame{columns.left[i % 2], Top + static_cast<int>(i / 2) * panelHeight, area.limits, rows};
    std::ostringstream use;
    use << "<use xmlns:xlink='http://www.w3.org/1999/xlink' xlink:href='#over' x='" << frame.left - first.left
        << "' y='" << frame.top - first.top << "'/>\n";
    picture::Panel(svg, frame, themes[i].title, themes[i].classes, themes[i].outcomes, use.str());
  }
  svg << "</svg>\n";
  Print(svg.str());
  return read.faults.empty() && !incomplete ? 0 : 1;
}

}  // namespace latigo::cli
