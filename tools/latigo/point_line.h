// A line of a points file: two coordinates, perhaps a height, and anything else.
#pragma once

#include <optional>
#include <string_view>

#include "angle.h"

namespace latigo::cli {

// What the first two fields are.
enum class Order { LatitudeLongitude, LongitudeLatitude, Grid };

struct PointLine {
  double first = 0;             // latitude in degrees, or x
  double second = 0;            // longitude in degrees, or y
  std::optional<double> third;  // height, or z
  char separator = ' ';         // ' ' or ',': as in the line
  std::string_view rest;        // what stands behind, from its separator on
  std::string_view restWithThird;
  double toFirst = 0;  // of a line of two positions, the second
  double toSecond = 0;
  const char* fault = nullptr;  // why the line is no point; null for a point
};

// Blank lines and lines that begin with # are no points and no faults.
bool IsComment(std::string_view line);

// Fields are separated by blanks, or by commas with or without blanks around. A comma straight between two whole
// numbers could be a decimal comma and is a fault.
PointLine ParsePointLine(std::string_view line, Order order);

// Two positions, and anything else.
PointLine ParseTwoPoints(std::string_view line, Order order);

}  // namespace latigo::cli
