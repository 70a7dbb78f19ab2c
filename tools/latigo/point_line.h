// A line of a points file: two coordinates, perhaps a height, and anything else.
#pragma once

#include <optional>
#include <string_view>

#include "angle.h"

namespace latigo::cli {

// What the first two fields are.
enum class Order { LatitudeLongitude, LongitudeLatitude, Grid };

// What separates the fields of a line. Auto: blanks, or commas with or without blanks around.
enum class Separation : char { Auto, Comma = ',', Semicolon = ';', Tab = '\t', Blank = ' ' };

struct PointLine {
  double first = 0;             // latitude in degrees, or x
  double second = 0;            // longitude in degrees, or y
  std::optional<double> third;  // height, or z
  char separator = ' ';         // as in the line; a tab if one stands behind the first of blank-separated fields
  bool badThird = false;        // the fault is that of the third
  bool wholeThird = false;      // the third is digits only, and could be a name
  std::string_view rest;        // what stands behind, from its separator on
  std::string_view restWithThird;
  double toFirst = 0;  // of a line of two positions, the second
  double toSecond = 0;
  const char* fault = nullptr;  // why the line is no point; null for a point
};

// Blank lines and lines that begin with # are no points and no faults.
bool IsComment(std::string_view line);

// With Separation::Auto a comma straight between two whole numbers could be a decimal comma and is a fault.
PointLine ParsePointLine(std::string_view line, Order order, Separation separation = Separation::Auto);

// Two positions, and anything else.
PointLine ParseTwoPoints(std::string_view line, Order order, Separation separation = Separation::Auto);

}  // namespace latigo::cli
