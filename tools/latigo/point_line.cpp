#include "point_line.h"

#include <algorithm>

#include "field_text.h"
#include "fields.h"

namespace latigo::cli {

namespace {

std::string_view TrimLeft(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
  return text;
}

std::string_view TrimRight(std::string_view text) {
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

// Iterates over the fields of a line; the rest begins with the separator.
class Fields {
 public:
  Fields(std::string_view line, Separation separation) : left_(TrimLeft(line)) {
    if (separation == Separation::Auto) {
      const auto* const end = std::find_if(left_.begin(), left_.end(), [](char c) { return IsBlank(c) || c == ','; });
      const std::string_view next = TrimLeft({end, left_.end()});
      separator_ = next.starts_with(',') ? ',' : BlankOf({end, next.begin()});
    } else if (separation == Separation::Blank) {
      const auto* const end = std::find_if(left_.begin(), left_.end(), [](char c) { return IsBlank(c); });
      separator_ = BlankOf({end, TrimLeft({end, left_.end()}).begin()});
    } else {
      separator_ = static_cast<char>(separation);
      single_ = true;
    }
    single_ = single_ || separator_ == ',';
    left_ = separation == Separation::Tab ? line : left_;
  }

  std::string_view Next() {
    if (!single_) {
      left_ = TrimLeft(left_);
    } else if (begun_ && !left_.empty()) {
      left_.remove_prefix(1);
    }
    begun_ = true;
    const auto* const end = single_ ? std::find(left_.begin(), left_.end(), separator_)
                                    : std::find_if(left_.begin(), left_.end(), [](char c) { return IsBlank(c); });
    const std::string_view field = TrimRight(TrimLeft({left_.begin(), end}));
    left_ = {end, left_.end()};
    return field;
  }

  char Separator() const { return separator_; }
  std::string_view Left() const { return left_; }

 private:
  static char BlankOf(std::string_view blanks) { return blanks.find('\t') != std::string_view::npos ? '\t' : ' '; }

  std::string_view left_;
  char separator_ = ' ';
  bool single_ = false;  // each separator ends a field; else each run of blanks
  bool begun_ = false;
};

constexpr const char* LoneHemisphere =
    "a hemisphere letter in a field of its own: write it directly beside the number, or choose it with --dms-columns";
constexpr const char* Semicolon = "a semicolon: --separator semicolon reads it as the field separator";

constexpr const char* PartsOrDecimalComma =
    "degrees and minutes, or two numbers with decimal commas: --separator comma or --decimal-comma decides";
constexpr const char* NumbersOrDecimalComma =
    "two numbers, or a decimal comma in the first: --separator comma or --decimal-comma decides";
constexpr const char* NumberWithUnit = "a height is a number without a unit; --no-height copies it";
constexpr const char* EmptyOrAligned =
    "an empty field, or several tabs between two fields: --separator tab or --separator blank decides";

// Whether a field begins with two numbers and a blank between them.
bool HasParts(std::string_view field) {
  const std::size_t blank = field.find_first_of(" \t");
  const std::size_t next = field.find_first_not_of(" \t", blank);
  return next != std::string_view::npos && IsDigit(field[next]) && IsDigit(field[blank - 1]);
}

void Refuse(PointLine& point, const char* fault, std::size_t column, std::string_view text) {
  point.fault = fault;
  point.faultColumn = column;
  point.faultText = text;
  point.badThird = false;
}

// Refuses a line for one of its first two fields, of which a more precise reason may be known.
void RefuseField(PointLine& point, const char* fault, std::size_t column, std::string_view field,
                 Separation separation) {
  const bool semicolon = separation == Separation::Auto && field.find(';') != std::string_view::npos;
  Refuse(point, IsAnyHemisphere(field) ? LoneHemisphere : semicolon ? Semicolon : fault, column, field);
}

// Whether fields that begin with whole degrees and minutes could go on with the parts of two angles. In a line of two
// positions, four numbers are none.
bool CouldBeParts(Fields fields, Positions positions) {
  const std::string_view degrees = fields.Next();
  const std::string_view minutes = fields.Next();
  if (!IsWholeDegrees(degrees) || !IsPart(minutes)) {
    return false;
  }
  const std::string_view third = fields.Next();
  const std::string_view fourth = fields.Next();
  if (IsMarkedDegrees(third)) {  // N52 30.5 E003
    return true;
  }
  if (HasFraction(minutes) || (HasFraction(fourth) && positions == Positions::One)) {  // 52 30.5 3 10.2
    return IsWhole(third) && IsPart(fourth) && positions == Positions::One;
  }
  if (!third.empty() && IsAnyHemisphere(third.substr(third.size() - 1))) {  // 52 30 00N
    return IsPart(third.substr(0, third.size() - 1));
  }
  return IsPart(third) && (IsAnyHemisphere(fourth) || IsMarkedDegrees(fourth) ||
                           (IsWhole(fourth) && IsPart(fields.Next()) && IsPart(fields.Next())));
}

// Whether fields separated by blanks have two tabs with no text between them, or a tab before the first.
bool HasEmptyField(std::string_view text) {
  bool afterTab = true;
  for (const char c : text) {
    if (c == '\t' && afterTab) {
      return true;
    }
    afterTab = c == '\t' || (afterTab && c == ' ');
  }
  return false;
}

// Reads a height, if the next field is one. Refuses what could be a part of an angle.
void ParseThird(Fields& fields, Order order, const Fields& whole, Positions positions, PointLine& point) {
  Fields ahead = fields;
  const std::string_view field = ahead.Next();
  if (order != Order::Grid) {
    const std::string_view next = Fields(ahead).Next();
    if (IsAnyHemisphere(field) || IsAnyHemisphere(next)) {
      const bool third = IsAnyHemisphere(field);
      Refuse(point, LoneHemisphere, third ? 3 : 4, third ? field : next);
      return;
    }
    if (!field.empty() && CouldBeParts(whole, positions)) {
      Refuse(point, PartsInFields, 1, point.coordinates);
      return;
    }
  }
  if (field.empty()) {
    return;
  }
  const Parsed parsed = ParseNumber(field);
  if (parsed.fault == nullptr) {
    point.third = parsed.value;
    point.wholeThird = field.find_first_not_of("0123456789") == std::string_view::npos;
    fields = ahead;
  } else if (LooksLikeNumber(field) || HasUnit(field)) {
    Refuse(point, HasUnit(field) ? NumberWithUnit : parsed.fault, 3, field);
    point.badThird = true;
  }
}

}  // namespace

bool IsComment(std::string_view line, char separator) {
  const std::string_view text = TrimLeft(line);
  const std::string_view blanks = line.substr(0, line.size() - text.size());
  const bool endsDosFile = text == "\x1A";
  return text.empty() || endsDosFile ||
         (text.front() == '#' && (separator != '\t' || blanks.find('\t') == std::string_view::npos));
}

const char* const PartsInFields =
    "degrees, minutes and seconds in fields of their own, or whole degrees: --dms-columns or --columns decides";

bool CouldHaveParts(std::string_view line, Separation separation, Positions positions) {
  return CouldBeParts(Fields(line, separation), positions);
}

namespace {

PointLine ParsePosition(std::string_view line, Order order, Separation separation, Positions positions) {
  const Fields whole(line, separation);
  Fields fields = whole;
  const std::string_view first = fields.Next();
  const bool tight =
      separation == Separation::Auto && fields.Left().starts_with(',') && !fields.Left().starts_with(", ");
  const std::string_view second = fields.Next();

  PointLine point;
  point.separator = fields.Separator();
  point.rest = point.restWithThird = fields.Left();
  if (second.empty()) {
    const bool semicolon = first.find(';') != std::string_view::npos;
    RefuseField(point, "a field is missing", semicolon ? 1 : 2, semicolon ? first : line, separation);
    return point;
  }
  point.coordinates = {first.data(), second.data() + second.size()};
  if (tight && IsWhole(first) && IsWhole(second)) {
    Refuse(point,
           "a comma between whole numbers could be a decimal comma: write a decimal point, or a blank after the comma",
           1, point.coordinates);
    return point;
  }
  if (separation == Separation::Auto && point.separator == ',' && HasParts(second)) {  // the first has no blanks
    Refuse(point, order == Order::Grid ? NumbersOrDecimalComma : PartsOrDecimalComma, 2, second);
    return point;
  }
  Parsed one;
  Parsed two;
  switch (order) {
    case Order::LatitudeLongitude:
      one = ParseAngle(first, Axis::Latitude);
      two = ParseAngle(second, Axis::Longitude);
      break;
    case Order::LongitudeLatitude:
      one = ParseAngle(second, Axis::Latitude);
      two = ParseAngle(first, Axis::Longitude);
      break;
    case Order::Grid:
      one = ParseNumber(first);
      two = ParseNumber(second);
      break;
  }
  point.first = one.value;
  point.second = two.value;
  if (one.fault != nullptr || two.fault != nullptr) {
    const Parsed& ofFirst = order == Order::LongitudeLatitude ? two : one;
    const Parsed& ofSecond = order == Order::LongitudeLatitude ? one : two;
    if (ofFirst.fault != nullptr) {
      RefuseField(point, ofFirst.fault, 1, first, separation);
    } else {
      RefuseField(point, ofSecond.fault, 2, second, separation);
    }
    return point;
  }
  ParseThird(fields, order, whole, positions, point);
  point.rest = fields.Left();
  if (separation == Separation::Auto && point.separator == '\t' &&
      HasEmptyField({line.data(), static_cast<std::size_t>(point.rest.data() - line.data())})) {
    Refuse(point, EmptyOrAligned, 1, point.coordinates);
  }
  return point;
}

}  // namespace

PointLine ParsePointLine(std::string_view line, Order order, Separation separation) {
  return ParsePosition(line, order, separation, Positions::One);
}

PointLine ParseTwoPoints(std::string_view line, Order order, Separation separation) {
  PointLine from = ParsePosition(line, order, separation, Positions::Two);
  if (from.fault != nullptr) {
    return from;
  }
  std::string_view second = from.restWithThird;
  second.remove_prefix(second.starts_with(from.separator) ? 1 : 0);
  const PointLine to = ParsePosition(second, order, separation, Positions::Two);
  from.toFirst = to.first;
  from.toSecond = to.second;
  from.rest = to.restWithThird;
  from.fault = to.fault;
  from.faultColumn = to.faultColumn + 2;
  from.faultText = to.faultText;
  if (!to.coordinates.empty()) {
    from.coordinates = {from.coordinates.data(), to.coordinates.data() + to.coordinates.size()};
  }
  return from;
}

}  // namespace latigo::cli
