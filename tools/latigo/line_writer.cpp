#include "line_writer.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>

namespace latigo::cli {

void Writer::Number(double value, int precision) {
  if (ShortNumber(value, precision)) {
    return;
  }
  char text[400];  // the largest double has 309 digits before the point
  const char* const end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, precision).ptr;
  std::string_view number(text, static_cast<std::size_t>(end - text));
  if (number.starts_with('-') && number.find_first_not_of("-0.") == std::string_view::npos) {
    number.remove_prefix(1);
  }
  Text(number);
}

// Uses a whole number of units of the last digit, which is correct unless the value is too close to a midpoint.
bool Writer::ShortNumber(double value, int precision) {
  constexpr double PowersOfTen[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
  if (precision >= static_cast<int>(std::size(PowersOfTen))) {
    return false;
  }
  const double scaled = std::fabs(value) * PowersOfTen[precision];
  const double below = std::floor(scaled);
  const double fraction = scaled - below;
  if (!(std::fabs(fraction - 0.5) > 1e-15 * scaled)) {  // also for 5e14 and above
    return false;
  }
  const auto units = static_cast<std::uint64_t>(below) + (fraction > 0.5 ? 1 : 0);
  char digits[32] = "0000000000000";  // leading zeros for units of at most 15 digits
  const auto whole = static_cast<std::size_t>(precision) + 1;
  char* first = digits + whole;
  const char* const end = std::to_chars(first, digits + sizeof digits, units).ptr;
  const auto length = static_cast<std::size_t>(end - first);
  const char* const start = length < whole ? end - whole : first;
  const char* const point = end - precision;
  if (value < 0 && units != 0) {
    Char('-');
  }
  Text({start, point});
  if (precision > 0) {
    Char('.');
    Text({point, end});
  }
  return true;
}

void Writer::Dms(double degrees, Axis axis, int precision) {
  char text[64];
  const char* const end = WriteDms(text, degrees, axis, precision);
  Text({text, static_cast<std::size_t>(end - text)});
}

void Writer::UseComma(std::size_t begin) {
  std::replace(text_.begin() + static_cast<std::ptrdiff_t>(begin), text_.end(), '.', ',');
}

}  // namespace latigo::cli
