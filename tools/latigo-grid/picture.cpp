#include "picture.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>
#include <vector>

#include "amounts.h"

namespace latigo::grids {

namespace {

// Values in the middle of cells that cover the area, from the north; NaN for none.
struct Samples {
  int cols, rows;
  std::vector<double> values;
  double low = std::numeric_limits<double>::infinity(), high = -low;

  // 0 for the lowest, below 1.
  double Part(double value) const { return high > low ? std::min((value - low) / (high - low), 0.999) : 0.5; }
};

Samples Sample(const Surface& surface, int width, int most, double cellShape) {
  const Area area = surface.Limits();
  const double middle = std::cos((area.south + area.north) / 2 * Radians);
  const double shape = (area.north - area.south) / std::fmax((area.east - area.west) * std::fmax(middle, 0.2), 1e-9);
  Samples samples{width, std::clamp(static_cast<int>(std::lround(width * shape / cellShape)), 2, most), {}};
  for (int row = 0; row < samples.rows; ++row) {
    for (int col = 0; col < width; ++col) {
      Values values{};
      double value = std::numeric_limits<double>::quiet_NaN();
      const double latitude = area.north - (area.north - area.south) * (row + 0.5) / samples.rows;
      if (surface.At(latitude, area.west + (area.east - area.west) * (col + 0.5) / width, values)) {
        value = surface.TheKind() == Kind::Geoid ? values[0] : Metres(surface.TheKind(), values, latitude);
        samples.low = std::min(samples.low, value), samples.high = std::max(samples.high, value);
      }
      samples.values.push_back(value);
    }
  }
  return samples;
}

std::string Range(const Surface& surface, const Samples& samples) {
  return std::string(surface.TheKind() == Kind::Geoid ? "values" : "lengths") + " from " + Length(samples.low) +
         " to " + Length(samples.high);
}

}  // namespace

std::string TerminalPicture(const Surface& surface) {
  static const std::string shades = ".:-=+*#%@";
  const Samples samples = Sample(surface, 64, 32, 2);
  std::string text;
  for (std::size_t i = 0; i < samples.values.size(); ++i) {
    const double value = samples.values[i];
    text += std::isnan(value)
                ? ' '
                : shades[static_cast<std::size_t>(samples.Part(value) * static_cast<double>(shades.size()))];
    text += (i + 1) % static_cast<std::size_t>(samples.cols) == 0 ? "\n" : "";
  }
  return text + shades.front() + " to " + shades.back() + ": " + Range(surface, samples) + "\n";
}

std::string SvgPicture(const Surface& surface, const std::string& title) {
  constexpr int Cell = 6, Top = 24;
  const Samples samples = Sample(surface, 120, 120, 1);
  const Area area = surface.Limits();
  std::string safe;
  for (const char c : title) {
    safe += c == '<' ? "&lt;" : c == '&' ? "&amp;" : std::string(1, c);
  }
  std::ostringstream svg;
  const int width = samples.cols * Cell, height = samples.rows * Cell;
  svg << R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" << width << R"(" height=")" << height + 2 * Top
      << R"(" font-family="sans-serif" font-size="12" fill="#222">)"
      // A background, so that the picture is legible on a dark page; cells without seams between them.
      << R"(<rect width="100%" height="100%" fill="#fff"/>)"
      << "\n<text x=\"4\" y=\"16\">" << safe << "</text>\n<g shape-rendering=\"crispEdges\">\n";
  for (std::size_t i = 0; i < samples.values.size(); ++i) {
    if (std::isnan(samples.values[i])) {
      continue;
    }
    const double part = samples.Part(samples.values[i]);
    const auto cols = static_cast<std::size_t>(samples.cols);
    svg << R"(<rect x=")" << i % cols * Cell << R"(" y=")" << i / cols * Cell + Top << R"(" width=")" << Cell
        << R"(" height=")" << Cell << R"(" fill="hsl()" << std::lround(240 - 240 * part) << ",70%,"
        << std::lround(35 + 30 * part) << "%)\"/>\n";
  }
  svg << "</g>\n"
      << R"(<text x="4" y=")" << height + Top + 16 << "\">" << Degrees(area.south) << " to " << Degrees(area.north)
      << " north, " << Degrees(area.west) << " to " << Degrees(area.east) << " east; " << Range(surface, samples)
      << ", blue to red</text>\n</svg>\n";
  return svg.str();
}

}  // namespace latigo::grids
