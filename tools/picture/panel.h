// Pictures of measurements over an area: panels of coloured cells with axes in degrees, as SVG. The background is
// white, so they are legible on a dark page too.
#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "measures.h"

namespace latigo::picture {

// A colour and its meaning: values below a limit, if no earlier class matches; or a code.
struct Class {
  double below;
  std::int32_t code;
  std::string fill;
  std::string words;
};

// Millimetres, in powers of ten.
std::span<const Class> ClosureClasses();
// Parts per million, in powers of ten.
std::span<const Class> ScaleClasses();
// Steps of a round size, about eight between the values, and the codes. Two colours meet at 0. Values that differ by
// less than `least` are one class.
std::vector<Class> LinearClasses(double low, double high, double least);

// Pixels.
inline constexpr int Cell = 4;
inline constexpr int Columns = 72;
inline constexpr int DefaultRows = 60;

// The place of a panel and the area that it shows.
struct Frame {
  int left, top;  // of its cells
  Area area;
  int rows = DefaultRows;

  int Bottom() const { return top + rows * Cell; }
  // Pixels of a position.
  double X(double longitude) const { return left + (longitude - area.west) / (area.east - area.west) * Columns * Cell; }
  double Y(double latitude) const { return top + (area.north - latitude) / (area.north - area.south) * rows * Cell; }
};

using Measured = std::function<Outcome(Position)>;

// The measured values in the middle of all cells, row by row from the north.
std::vector<Outcome> MeasureCells(const Area& area, int rows, const Measured& measured);

// Cells that failed in one panel fail in another with the same code, so that the limits of a domain are in both.
void TakeFailures(const std::vector<Outcome>& failed, std::vector<Outcome>& outcomes);

// A text from outside as characters of XML; bytes that are not UTF-8 and control characters become question marks.
std::string Escaped(const std::string& text);

// The begin of a picture: its size, patterns, background and title.
void Begin(std::ostream& svg, int width, int height, const std::string& title);

// A number with a minus sign, and as many decimals as its step requires.
std::string Number(double value, double step);

// The width of a text in pixels, estimated from its number of characters.
double TextWidth(std::string_view text, int size);

// Attributes may be empty, or begin with a blank.
void Text(std::ostream& svg, int x, int y, const char* attributes, const std::string& words);

// The pixels that a panel needs to the left of its cells, for the axis; and to the right, for the legend.
int LeftMargin(const Area& area);
int RightMargin(std::span<const Class> classes, const std::vector<Outcome>& outcomes);

// Cells, coloured by their outcomes, and a legend of the colours used. `over` is drawn between cells and axes.
void Panel(std::ostream& svg, const Frame& frame, const std::string& title, std::span<const Class> classes,
           const std::vector<Outcome>& outcomes, const std::string& over = {});

}  // namespace latigo::picture
