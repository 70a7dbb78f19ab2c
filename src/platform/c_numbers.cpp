#include "platform/c_numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <string_view>
#include <system_error>

namespace latigo {

namespace {

struct Number {
  bool negative;
  std::string_view digits;  // from the first character after the sign
};

Number SplitSign(const char* text) {
  std::string_view rest(text);
  rest.remove_prefix(std::min(rest.find_first_not_of(" \t\n\v\f\r"), rest.size()));
  const bool negative = rest.starts_with('-');
  if (negative || rest.starts_with('+')) {
    rest.remove_prefix(1);
  }
  if (rest.starts_with('-')) {  // from_chars would accept a second sign
    rest = {};
  }
  return {negative, rest};
}

}  // namespace

double CDouble(const char* text) {
  auto [negative, digits] = SplitSign(text);
  auto format = std::chars_format::general;
  if (digits.empty()) {
    return 0;
  }
  if (digits.starts_with("0x") || digits.starts_with("0X")) {
    format = std::chars_format::hex;
    digits.remove_prefix(2);
    if (digits.find_first_of(".0123456789ABCDEFabcdef") != 0) {  // from_chars would accept a sign and words
      digits = {};
    }
  }
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, format);
  if (error == std::errc::invalid_argument && format == std::chars_format::general) {
    return 0;
  }
  if (error == std::errc::result_out_of_range) {
    // In a text of ordinary length only the exponent can cause overflow (positive) or underflow (negative).
    const std::string_view number(digits.data(), static_cast<std::size_t>(end - digits.data()));
    value = number.find('-') != std::string_view::npos ? 0 : HUGE_VAL;
  }
  return negative ? -value : value;
}

std::int32_t CInt(const char* text) {
  const auto [negative, digits] = SplitSign(text);
  using Limits = std::numeric_limits<std::int32_t>;
  std::int64_t value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (result.ec == std::errc::result_out_of_range) {
    value = std::numeric_limits<std::int64_t>::max();
  }
  if (negative) {
    value = -value;
  }
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

}  // namespace latigo
