// What the text of a field could be: a number, a part of an angle, a hemisphere, or a word.
#pragma once

#include <string_view>

#include "angle.h"

namespace latigo::cli {

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
// Also each byte of a letter that is not ASCII.
constexpr bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || static_cast<unsigned char>(c) >= 0x80;
}

// Digits and signs only: a whole number, if it is a number at all.
bool IsWhole(std::string_view text);

// Signs, then digits with points or commas; or nan and inf: a number without exponent, or a text probably intended as
// one.
bool LooksLikeNumber(std::string_view text);

// A number with one of the units m, ft and usft after it.
bool HasUnit(std::string_view text);

// Empty, without letters and digits, or a word for a missing value, such as n/a.
bool IsMissing(std::string_view text);

// Whether a row of a table has empty fields only, as spreadsheets write above and below the others.
bool IsEmptyRow(std::string_view line, char separator);

// Text in place of a number, or of an angle: has a letter, and is not a number, such an angle, or missing.
bool IsWord(std::string_view text, bool isAngle);

// Minutes or seconds, at most 60 because rounding can make 60; and whether a number has a fraction. The decimal mark
// may be a comma.
bool IsPart(std::string_view text);
bool HasFraction(std::string_view text);

// N, S, E or W of the axis, in upper or lower case; or of either axis.
constexpr bool IsHemisphere(std::string_view text, Axis axis) {
  return text.size() == 1 &&
         std::string_view(axis == Axis::Latitude ? "NSns" : "EWew").find(text.front()) != std::string_view::npos;
}
constexpr bool IsAnyHemisphere(std::string_view text) {
  return IsHemisphere(text, Axis::Latitude) || IsHemisphere(text, Axis::Longitude);
}

// A hemisphere letter, or its word in some languages. Most other texts are excluded by their length or first letter.
bool IsHemisphereWord(std::string_view text, Axis axis);
constexpr bool CouldBeHemisphereWord(std::string_view text) {
  return !text.empty() && text.size() <= 5 &&
         std::string_view("NSEWOnsewo").find(text.front()) != std::string_view::npos;
}

// Whole degrees, alone or with marks: a hemisphere letter beside them, or a degree mark after them.
bool IsWholeDegrees(std::string_view text);
bool IsMarkedDegrees(std::string_view text);

}  // namespace latigo::cli
