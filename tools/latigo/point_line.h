// A line of a points file: two coordinates, optionally a height, and further text.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "angle.h"
#include "table_options.h"

namespace latigo::cli {

// The meaning of the first two fields.
enum class Order { LatitudeLongitude, LongitudeLatitude, Grid };

struct PointLine {
  double first = 0;             // latitude in degrees, or x
  double second = 0;            // longitude in degrees, or y
  std::optional<double> third;  // height, or z
  char separator = ' ';         // as in the line; a tab if one follows the first of blank-separated fields
  bool badThird = false;        // the fault is in the third field
  bool wholeThird = false;      // the third field is digits only, and could be a name
  std::string_view rest;        // the text that follows, with its separator
  std::string_view restWithThird;
  double toFirst = 0;  // of a line of two positions, the second
  double toSecond = 0;
  const char* fault = nullptr;   // why the line is invalid; null for a point
  std::size_t faultColumn = 0;   // the field of the fault, from 1
  std::string_view faultText;    // as in the line
  std::string_view coordinates;  // the first two fields, for messages
};

// Blank lines and lines that begin with # are comments. A tab that separates fields may not precede it.
bool IsComment(std::string_view line, char separator = ' ');

// Whether the fields at the front of a line could be parts of angles, as 52 30 00N 5 0 0E, N52 30.5 E5 10.2 or
// 52 30 0 5 0 0; and the message about them.
enum class Positions { One, Two };  // of a line
bool CouldHaveParts(std::string_view line, Separation separation, Positions positions);
extern const char* const PartsInFields;

// Separation::Auto: blanks, or commas with optional blanks around them. A comma directly between two whole numbers
// could be a decimal comma and is a fault.
PointLine ParsePointLine(std::string_view line, Order order, Separation separation = Separation::Auto);

// Two positions, and further text.
PointLine ParseTwoPoints(std::string_view line, Order order, Separation separation = Separation::Auto);

}  // namespace latigo::cli
