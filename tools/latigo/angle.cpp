#include "angle.h"

#include <charconv>
#include <cmath>
#include <system_error>

namespace latigo::cli {

namespace {

struct Hemispheres {
  char positive, negative;
};
constexpr Hemispheres LettersOf(Axis axis) {
  return axis == Axis::Latitude ? Hemispheres{'N', 'S'} : Hemispheres{'E', 'W'};
}

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// Removes one of the marks from the front of the text.
template <typename... Marks>
bool Take(std::string_view& text, Marks... marks) {
  for (const std::string_view mark : {std::string_view(marks)...}) {
    if (text.starts_with(mark)) {
      text.remove_prefix(mark.size());
      return true;
    }
  }
  return false;
}

// Reads digits with or without a fraction, without sign and exponent.
bool TakeDigits(std::string_view& text, double& value, bool& whole) {
  if (text.empty() || (!IsDigit(text.front()) && text.front() != '.')) {
    return false;
  }
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value, std::chars_format::fixed);
  if (result.ec != std::errc()) {
    return false;
  }
  const auto length = static_cast<std::size_t>(result.ptr - text.data());
  whole = text.substr(0, length).find('.') == std::string_view::npos;
  text.remove_prefix(length);
  return true;
}

// Degrees, optionally with minutes and seconds.
const char* TakeSexagesimal(std::string_view& text, double& degrees) {
  constexpr const char* NoNumber = "not a number";
  bool whole = false;
  if (!TakeDigits(text, degrees, whole)) {
    return NoNumber;
  }
  const bool colon = Take(text, ":");
  if (!colon && (!Take(text, "\u00B0", "d") || text.empty() || !IsDigit(text.front()))) {
    return nullptr;
  }
  double minutes = 0;
  bool wholeMinutes = false;
  if (!whole || !TakeDigits(text, minutes, wholeMinutes)) {
    return NoNumber;
  }
  double seconds = 0;
  const bool secondColon = colon && Take(text, ":");
  if (secondColon || (Take(text, "'", "\u2032") && !text.empty() && IsDigit(text.front()))) {
    bool any = false;
    if (!wholeMinutes || !TakeDigits(text, seconds, any)) {
      return NoNumber;
    }
    Take(text, "\"", "\u2033", "''");
  }
  if (minutes >= 60 || seconds >= 60) {
    return "minutes and seconds must be below 60";
  }
  degrees += minutes / 60 + seconds / 3600;
  return nullptr;
}

}  // namespace

Parsed ParseNumber(std::string_view text) {
  double value = 0;
  if (text.starts_with('+') && !text.starts_with("+-")) {
    text.remove_prefix(1);
  }
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) {
    return {0,
            text.find(',') != std::string_view::npos ? "not a number (the decimal mark is a point)" : "not a number"};
  }
  return {value, nullptr};
}

Parsed ParseAngle(std::string_view text, Axis axis) {
  const bool minus = text.starts_with('-');
  const bool hasSign = minus || text.starts_with('+');
  text.remove_prefix(hasSign ? 1 : 0);
  const std::string_view unsignedText = text;
  double degrees = 0;
  if (const char* fault = TakeSexagesimal(text, degrees); fault != nullptr) {
    return {0, fault};
  }
  if (text.size() > 1 && Upper(text.front()) == 'E') {  // an exponent, not a hemisphere
    const Parsed number = ParseNumber(unsignedText);
    degrees = number.fault == nullptr ? number.value : degrees;
    text.remove_prefix(number.fault == nullptr ? text.size() : 0);
  }
  bool negative = minus;
  if (!text.empty()) {
    const auto [positiveLetter, negativeLetter] = LettersOf(axis);
    const char letter = Upper(text.front());
    if (text.size() != 1 || (letter != positiveLetter && letter != negativeLetter)) {
      return {0, axis == Axis::Latitude ? "not a latitude" : "not a longitude"};
    }
    if (hasSign) {
      return {0, "both a sign and a hemisphere letter"};
    }
    negative = letter == negativeLetter;
  }
  if (degrees > (axis == Axis::Latitude ? 90 : 360)) {
    return {0, axis == Axis::Latitude ? "a latitude above 90 degrees" : "a longitude above 360 degrees"};
  }
  return {negative ? -degrees : degrees, nullptr};
}

char* WriteDms(char* buffer, double degrees, Axis axis, int precision) {
  const auto [positiveLetter, negativeLetter] = LettersOf(axis);
  const double scale = std::pow(10.0, precision);
  const double units = std::round(std::fabs(degrees) * 3600 * scale);  // of the last digit of the seconds
  const double wholeMinutes = std::floor(units / (60 * scale));
  const double seconds = (units - wholeMinutes * 60 * scale) / scale;
  const int minutes = static_cast<int>(std::fmod(wholeMinutes, 60));

  char* out = std::to_chars(buffer, buffer + 8, static_cast<int>(wholeMinutes / 60)).ptr;
  *out++ = ':';
  *out++ = static_cast<char>('0' + minutes / 10);
  *out++ = static_cast<char>('0' + minutes % 10);
  *out++ = ':';
  if (seconds < 10) {
    *out++ = '0';
  }
  out = std::to_chars(out, buffer + 62, seconds, std::chars_format::fixed, precision).ptr;
  if (axis != Axis::Azimuth) {
    *out++ = degrees < 0 && units > 0 ? negativeLetter : positiveLetter;
  }
  return out;
}

}  // namespace latigo::cli
