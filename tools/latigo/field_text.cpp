#include "field_text.h"

#include <algorithm>
#include <iterator>

#include "fields.h"
#include "platform/ascii.h"

namespace latigo::cli {

namespace {

// The text without the hemisphere letter beside it and the degree mark after it.
std::string_view Unmarked(std::string_view text) {
  if (IsAnyHemisphere(text.substr(0, 1))) {
    text.remove_prefix(1);
  } else if (!text.empty() && IsAnyHemisphere(text.substr(text.size() - 1))) {
    text.remove_suffix(1);
  }
  return WithoutDegreeMark(text);
}

}  // namespace

bool IsWhole(std::string_view text) {
  return !text.empty() && text.find_first_not_of("+-0123456789") == std::string_view::npos;
}

bool LooksLikeNumber(std::string_view text) {
  const auto is = [text](std::string_view word) { return EqualIgnoringCase(text, word); };
  const std::string_view number = text.substr(std::min(text.find_first_not_of("+-"), text.size()));  // 101-3 is a name
  return (number.find_first_not_of("0123456789.,") == std::string_view::npos &&
          text.find_first_of("0123456789") != std::string_view::npos) ||
         is("nan") || is("inf") || is("-inf") || is("infinity");
}

bool HasUnit(std::string_view text) {
  for (const std::string_view unit : {"m", "usft", "ft"}) {
    const std::size_t length = text.size() - std::min(unit.size(), text.size());
    if (EqualIgnoringCase(text.substr(length), unit)) {
      return LooksLikeNumber(Trimmed(text.substr(0, length)));
    }
  }
  return false;
}

bool IsEmptyRow(std::string_view line, char separator) {
  const char empty[] = {separator, ' ', '\t', '"'};
  return line.find_first_not_of({empty, sizeof empty}) == std::string_view::npos;
}

bool IsMissing(std::string_view text) {
  constexpr std::string_view Missing[] = {"nan", "inf", "infinity", "na", "n/a", "null", "none", "nil"};
  const auto is = [text](std::string_view word) { return EqualIgnoringCase(text, word); };
  return std::none_of(text.begin(), text.end(), [](char c) { return IsLetter(c) || IsDigit(c); }) ||
         std::any_of(std::begin(Missing), std::end(Missing), is);
}

bool IsWord(std::string_view text, bool isAngle) {
  if (IsMissing(text)) {
    return false;
  }
  // N52.5 and N 52.5 are angles.
  std::string_view number = text;
  if (isAngle && IsAnyHemisphere(text.substr(0, 1))) {
    number = Trimmed(number.substr(1));
  }
  number.remove_prefix(number.starts_with('-') || number.starts_with('+') ? 1 : 0);
  number.remove_prefix(number.starts_with('.') || number.starts_with(',') ? 1 : 0);
  return (number.empty() || !IsDigit(number.front())) && std::any_of(text.begin(), text.end(), IsLetter);
}

bool IsPart(std::string_view text) {
  const std::size_t mark = std::min(text.find_first_of(".,"), text.size());
  const std::string_view whole = text.substr(0, mark);
  const std::string_view fraction = text.substr(std::min(mark + 1, text.size()));
  return IsWhole(whole) && whole.find_first_of("+-") == std::string_view::npos && ParseNumber(whole).value <= 60 &&
         (fraction.empty() || fraction.find_first_not_of("0123456789") == std::string_view::npos);
}

bool HasFraction(std::string_view text) {
  return text.find_first_of(".,") != std::string_view::npos;
}

bool IsHemisphereWord(std::string_view text, Axis axis) {
  constexpr std::string_view Latitudes[] = {"n", "s", "north", "south", "nord", "sud", "s\u00FCd", "norte", "sur"};
  constexpr std::string_view Longitudes[] = {"e", "w", "o", "east", "west", "ost", "est", "ouest", "este", "oeste"};
  const auto is = [text](std::string_view word) { return EqualIgnoringCase(text, word); };
  return axis == Axis::Latitude ? std::any_of(std::begin(Latitudes), std::end(Latitudes), is)
                                : std::any_of(std::begin(Longitudes), std::end(Longitudes), is);
}

bool IsWholeDegrees(std::string_view text) {
  return IsWhole(Unmarked(text));
}

bool IsMarkedDegrees(std::string_view text) {
  const std::string_view number = Unmarked(text);
  return number.size() < text.size() && IsWhole(number);
}

}  // namespace latigo::cli
