#include "angle.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
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

bool StartsWithDigit(std::string_view text) {
  return !text.empty() && IsDigit(text.front());
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

constexpr const char* NoNumber = "not a number";
constexpr const char* NoAngle = "not an angle, such as 52.5, 52.5N, 52:30:00, 52-30-00N or 52\u00B030'00\"";

void SkipBlanks(std::string_view& text) {
  while (Take(text, " ", "\t", "\u00A0", "\u2009", "\u202F")) {
  }
}

// The marks after degrees, minutes and seconds: typographic ones, as word processors write, and what the layouts of
// keyboards have in their place. Single bytes are those of Windows-1252; a doubled quote is one inside quotes.
constexpr std::string_view DegreeMarks[] = {"\u00B0", "\u00BA", "\u02DA", "deg", "DEG", "d", "D", "\xB0", "\xBA"};
constexpr std::string_view MinuteMarks[] = {"'",   "\u2032", "\u2019", "\u2018", "\u02B9", "\u00B4", "min",
                                            "MIN", "m",      "M",      "\x92",   "\x91",   "\xB4"};
constexpr std::string_view SecondMarks[] = {
    "\"\"",         "\"",           "\u2033", "\u201D", "\u201C", "\u02BA", "''",       "\u2032\u2032", "\u2019\u2019",
    "\u2018\u2018", "\u00B4\u00B4", "sec",    "SEC",    "\x94",   "\x93",   "\x92\x92", "\xB4\xB4"};
constexpr std::string_view Dashes[] = {"-", "\u2010", "\u2011", "\u2013"};  // between parts

template <std::size_t Count>
bool TakeAny(std::string_view& text, const std::string_view (&marks)[Count]) {
  return std::any_of(std::begin(marks), std::end(marks), [&](std::string_view mark) { return Take(text, mark); });
}
bool TakeDegreeMark(std::string_view& text) {
  return TakeAny(text, DegreeMarks);
}
bool TakeSecondMark(std::string_view& text) {
  return TakeAny(text, SecondMarks);
}
bool TakeMinuteMark(std::string_view& text) {
  std::string_view ahead = text;
  return !TakeSecondMark(ahead) && TakeAny(text, MinuteMarks);
}

// How the parts of an angle are separated.
enum class Between { Colon, Dash, Blank, Mark };

// Takes what is between degrees and minutes, or minutes and seconds: Blank also if that is nothing.
template <typename TakeMark>
Between TakeBetween(std::string_view& text, TakeMark takeMark) {
  std::string_view ahead = text;
  SkipBlanks(ahead);
  if (takeMark(ahead)) {
    SkipBlanks(ahead);
    text = ahead;
    return Between::Mark;
  }
  if (Take(text, ":")) {
    return Between::Colon;
  }
  std::string_view afterDash = text;
  if (TakeAny(afterDash, Dashes) && StartsWithDigit(afterDash)) {
    text = afterDash;
    return Between::Dash;
  }
  text = ahead;
  return Between::Blank;
}

// An S after parts that are marked by letters: the mark of the seconds, or the hemisphere.
constexpr const char* SecondsOrSouth = "S could be seconds or south: write 52d30m00s, and S after it for south";

bool IsLetterMark(std::string_view text, char letter) {
  SkipBlanks(text);
  return !text.empty() && Upper(text.front()) == letter;
}

// The S after the digits of seconds.
const char* TakeSecondLetter(std::string_view& text, bool letters, bool latitude) {
  if (latitude && ((letters && text == "S") || (!letters && text.starts_with('s')))) {
    return SecondsOrSouth;
  }
  if (letters) {
    Take(text, "s", "S");
  }
  return nullptr;
}

// Degrees, optionally with minutes and seconds.
const char* TakeSexagesimal(std::string_view& text, Axis axis, double& degrees) {
  bool whole = false;
  if (!TakeDigits(text, degrees, whole)) {
    return NoNumber;
  }
  if (text.empty()) {
    return nullptr;
  }
  bool letters = IsLetterMark(text, 'D');
  const Between first = TakeBetween(text, TakeDegreeMark);
  if (!StartsWithDigit(text)) {
    return first == Between::Colon ? NoNumber : nullptr;
  }
  double minutes = 0;
  bool wholeMinutes = false;
  if (!whole || !TakeDigits(text, minutes, wholeMinutes)) {
    return NoAngle;
  }
  double seconds = 0;
  const bool secondLetter = letters && IsLetterMark(text, 'S');
  letters = letters || IsLetterMark(text, 'M');
  const Between second = TakeBetween(text, TakeMinuteMark);
  if (StartsWithDigit(text)) {
    bool any = false;
    const bool marks = first >= Between::Blank && second >= Between::Blank;  // of which some may be missing
    if ((second != first && !marks) || !wholeMinutes || !TakeDigits(text, seconds, any)) {
      return NoAngle;
    }
    std::string_view ahead = text;
    SkipBlanks(ahead);
    if (TakeSecondMark(ahead)) {
      text = ahead;
    } else if (const char* fault = TakeSecondLetter(text, letters, axis == Axis::Latitude); fault != nullptr) {
      return fault;
    }
  } else if (secondLetter && axis == Axis::Latitude) {
    return SecondsOrSouth;
  } else if (second == Between::Colon) {
    return NoNumber;
  }
  if (minutes >= 60 || seconds >= 60) {
    return "minutes and seconds must be below 60";
  }
  degrees += minutes / 60 + seconds / 3600;
  return nullptr;
}

// Takes a hemisphere letter and the blanks beside it: +1 or -1, or 0 for none.
int TakeHemisphere(std::string_view& text, Axis axis) {
  std::string_view ahead = text;
  SkipBlanks(ahead);
  const auto [positiveLetter, negativeLetter] = LettersOf(axis);
  const char letter = ahead.empty() ? '\0' : Upper(ahead.front());
  if (letter != positiveLetter && letter != negativeLetter) {
    return 0;
  }
  ahead.remove_prefix(1);
  SkipBlanks(ahead);
  text = ahead;
  return letter == positiveLetter ? 1 : -1;
}

const char* NoAngleOf(std::string_view text, Axis axis) {
  if (text.size() == 1 && Upper(text.front()) == 'O') {
    return "O could be east (Ost) or west (ouest, oeste): write E or W";
  }
  if (text.starts_with(',')) {
    return "a comma in an angle: the decimal mark is a point, or with --decimal-comma a comma";
  }
  return axis == Axis::Latitude ? "not a latitude, such as 52.5, 52.5N, 52:30:00, 52-30-00N or 52\u00B030'00\""
                                : "not a longitude, such as 7.5, 7.5E, 7:30:00, 7-30-00E or 7\u00B030'00\"";
}

}  // namespace

Parsed ParseNumber(std::string_view text) {
  // A typographic minus, or the dash that a word processor makes of one.
  const bool minus = (text.starts_with("\u2212") || text.starts_with("\u2013")) &&
                     (StartsWithDigit(text.substr(3)) || text.substr(3).starts_with('.'));
  text.remove_prefix(minus ? 3 : 0);
  double value = 0;
  if (text.starts_with('+') && !text.starts_with("+-")) {
    text.remove_prefix(1);
  }
  const char* const end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, value);
  if (result.ec != std::errc() || result.ptr != end || !std::isfinite(value)) {
    return {0, text.find(',') != std::string_view::npos
                   ? "not a number (the decimal mark is a point, or with --decimal-comma a comma)"
                   : "not a number"};
  }
  return {minus ? -value : value, nullptr};
}

std::string_view WithoutDegreeMark(std::string_view text) {
  for (const std::string_view mark : DegreeMarks) {
    if (text.ends_with(mark)) {
      return text.substr(0, text.size() - mark.size());
    }
  }
  return text;
}

Parsed ParseAngle(std::string_view text, Axis axis) {
  const double limit = axis == Axis::Latitude ? 90 : 360;
  if (StartsWithDigit(text)) {  // the ordinary case first
    double decimal = 0;
    std::string_view left = text;
    bool whole = false;
    if (TakeDigits(left, decimal, whole) && left.empty() && decimal <= limit) {
      return {decimal, nullptr};
    }
  }
  SkipBlanks(text);
  const bool minus = Take(text, "-", "\u2212", "\u2013");
  const bool hasSign = minus || Take(text, "+");
  const int before = StartsWithDigit(text) ? 0 : TakeHemisphere(text, axis);
  const std::string_view unsignedText = text;
  double degrees = 0;
  if (const char* fault = TakeSexagesimal(text, axis, degrees); fault != nullptr) {
    return {0, fault};
  }
  int after = 0;
  if (!text.empty()) {
    if (Upper(text.front()) == 'E') {  // perhaps an exponent, not a hemisphere
      const Parsed number = ParseNumber(unsignedText);
      degrees = number.fault == nullptr ? number.value : degrees;
      text.remove_prefix(number.fault == nullptr ? text.size() : 0);
    }
    after = TakeHemisphere(text, axis);
    if (!text.empty()) {
      return {0, NoAngleOf(text, axis)};
    }
  }
  if (before != 0 && after != 0) {
    return {0, "two hemisphere letters"};
  }
  if (hasSign && before + after != 0) {
    return {0, "both a sign and a hemisphere letter"};
  }
  if (degrees > limit) {
    return {0, axis == Axis::Latitude ? "a latitude above 90 degrees" : "a longitude above 360 degrees"};
  }
  return {minus || before + after < 0 ? -degrees : degrees, nullptr};
}

char* WriteDms(char* buffer, double degrees, Axis axis, int precision) {
  const auto [positiveLetter, negativeLetter] = LettersOf(axis);
  const double scale = std::pow(10.0, precision);
  const double units = std::round(std::fabs(degrees) * 3600 * scale);  // of the last digit of the seconds
  const double wholeMinutes = std::floor(units / (60 * scale));
  const double seconds = (units - wholeMinutes * 60 * scale) / scale;
  const int minutes = static_cast<int>(std::fmod(wholeMinutes, 60));

  const bool negative = degrees < 0 && units > 0;

  if (negative && axis == Axis::Azimuth) {
    *buffer++ = '-';
  }
  char* out = std::to_chars(buffer, buffer + 8, static_cast<int>(wholeMinutes / 60)).ptr;
  *out++ = ':';
  *out++ = static_cast<char>('0' + minutes / 10);
  *out++ = static_cast<char>('0' + minutes % 10);
  *out++ = ':';
  if (seconds < 10) {
    *out++ = '0';
  }
  out = std::to_chars(out, buffer + 61, seconds, std::chars_format::fixed, precision).ptr;
  if (axis != Axis::Azimuth) {
    *out++ = negative ? negativeLetter : positiveLetter;
  }
  return out;
}

}  // namespace latigo::cli
