#include "table_layout.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "field_text.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr std::size_t LongestValue = 80;  // bytes of a number or angle; longer texts are none
constexpr std::size_t LongestShown = 60;  // bytes of a text in a message

constexpr const char* LoneHemisphere =
    "a hemisphere in a column of its own, which is not read: choose it too, as a letter, with --dms-columns";

// Whether a part of an angle could not be minutes, seconds or a hemisphere.
bool IsNoPart(std::string_view text, Axis axis) {
  const std::size_t digits = std::min(text.find_first_not_of("0123456789"), text.size());
  return digits == 0 ? !IsHemisphere(text, axis) : digits > 2 || ParseNumber(text.substr(0, digits)).value >= 60;
}

// The text with the decimal comma as a point, in the buffer; false for a text that also has a point.
bool WithPoint(std::string_view& text, char* buffer) {
  if (text.find('.') != std::string_view::npos) {
    return false;
  }
  std::replace_copy(text.begin(), text.end(), buffer, ',', '.');
  text = {buffer, text.size()};
  return true;
}

}  // namespace

std::string FaultText(const Fault& fault) {
  std::string text = fault.column == 0 ? "" : "column " + std::to_string(fault.column) + ": ";
  if (!fault.text.empty()) {
    const bool cut = fault.text.size() > LongestShown;
    text += '"' + Visible(fault.text.substr(0, LongestShown)) + (cut ? "...\": " : "\": ");
  }
  return text + fault.reason;
}

bool CouldBeDecimalComma(std::string_view line, const Row& row, std::size_t columns) {
  const char* begin = line.data() + line.size();
  for (std::size_t i = 0; i < columns; ++i) {
    begin = row.fields[i].bytes.data() == nullptr ? begin : std::min(begin, row.fields[i].bytes.data());
  }
  std::string_view left = line.substr(static_cast<std::size_t>(begin - line.data()));
  for (int i = 0; i < 4; ++i) {  // two numbers
    const std::size_t comma = std::min(left.find(','), left.size());
    if (!IsWhole(left.substr(0, comma)) || (comma == left.size() && i < 3)) {
      return false;
    }
    left.remove_prefix(std::min(comma + 1, left.size()));
  }
  return true;
}

Layout::Layout(char separator, bool decimalComma, std::span<const Wanted> wanted, std::vector<std::size_t> columns,
               std::size_t perAngle)
    : separator_(separator), decimalComma_(decimalComma), perAngle_(perAngle), columns_(std::move(columns)) {
  std::copy(wanted.begin(), wanted.end(), wanted_.begin());
  places_.resize(*std::max_element(columns_.begin(), columns_.end()) + 2);
  angles_ = std::any_of(wanted.begin(), wanted.end(), [](const Wanted& value) { return value.IsAngle(); });
  std::size_t place = 0;
  for (; place < columns_.size(); ++values_) {
    const Wanted& value = wanted[values_];
    for (std::size_t part = 0; part < (value.IsAngle() ? perAngle : 1); ++part) {
      const std::size_t column = columns_[place];
      places_[column].chosen = static_cast<std::int8_t>(place++);
      for (const std::size_t beside : {column - std::min<std::size_t>(column, 1), column + 1}) {
        // Blanks could also separate the parts of an angle, so any letter beside any value could be one.
        places_[beside].besideLatitude |= value.role == Role::Latitude || (angles_ && separator == ' ');
        places_[beside].besideLongitude |= value.role == Role::Longitude || (angles_ && separator == ' ');
      }
    }
  }
}

// The fields of an angle in several columns as one text with blanks between them.
bool Layout::Join(const Field* fields, std::string_view& text, char* buffer) const {
  std::size_t length = 0;
  for (std::size_t part = 0; part < perAngle_; ++part) {
    if (length + fields[part].text.size() + 1 > LongestValue) {
      return false;
    }
    buffer[length] = ' ';
    length += part == 0 ? 0 : 1;
    length = static_cast<std::size_t>(std::copy(fields[part].text.begin(), fields[part].text.end(), buffer + length) -
                                      buffer);
  }
  text = {buffer, length};
  return true;
}

bool Layout::ReadValue(std::size_t wanted, std::size_t place, Row& row) const {
  const Wanted& value = wanted_[wanted];
  const Field* const fields = &row.fields[place];
  const auto fail = [&](const char* reason, std::size_t part = 0) {
    row.fault = {reason, columns_[place + part] + 1, fields[part].bytes};
    return false;
  };
  const std::size_t parts = value.IsAngle() ? perAngle_ : 1;
  for (std::size_t part = 0; part < parts; ++part) {
    if (fields[part].text.empty() && !value.optional) {
      return fail(fields[part].bytes.data() == nullptr ? "a field is missing" : "the field is empty", part);
    }
  }
  std::string_view text = fields[0].text;
  row.texts[wanted] = text;
  if (value.role == Role::Text || text.empty()) {
    return true;
  }
  char joined[LongestValue];
  if (parts > 1 && !Join(fields, text, joined)) {
    return fail("the text is too long for an angle");
  }
  char pointed[LongestValue];  // cppcheck-suppress variableScope; the text lies in it until it is parsed
  if (decimalComma_) {
    if (separator_ == ',' && !std::all_of(fields, fields + parts, [](const Field& field) { return field.quoted; })) {
      return fail("a number with a decimal comma must be in quotes, since commas separate the fields");
    }
    if (text.size() > LongestValue) {
      return fail("the text is too long for a number");
    }
    if (!WithPoint(text, pointed)) {
      return fail("a decimal point, but --decimal-comma was given");
    }
  }
  const Parsed parsed = value.role == Role::Latitude    ? ParseAngle(text, Axis::Latitude)
                        : value.role == Role::Longitude ? ParseAngle(text, Axis::Longitude)
                                                        : ParseNumber(text);
  row.values[wanted] = parsed.value;
  if (parsed.fault == nullptr) {
    return true;
  }
  std::size_t part = 1;
  while (part < parts &&
         !IsNoPart(fields[part].text, value.role == Role::Latitude ? Axis::Latitude : Axis::Longitude)) {
    ++part;
  }
  return fail(parsed.fault, part < parts ? part : 0);
}

// Why a line has too many or too few fields, of which the last that is not empty is in the column `filled`.
Fault Layout::CountFault(std::string_view line, const Field& last, std::size_t filled, const Row& row) const {
  if (headerColumns != 0 && filled > headerColumns) {
    return {"the line has more fields than the header, as without quotes around a separator", filled, last.bytes};
  }
  if (wantsAll && filled < headerColumns) {
    return {"the line has fewer fields than the header, and blanks do not show which; --columns by number decides", 0,
            line};
  }
  if (pointColumns != 0 && row.columns > pointColumns && CouldBeDecimalComma(line, row, columns_.size())) {
    return {"the comma could be a separator or a decimal comma; --separator comma or --decimal-comma decides", 0, line};
  }
  return {};
}

void Layout::LearnHemispheres(std::string_view line) {
  if (!angles_ || separator_ == ' ') {  // blanks separate words, of which there may be any number
    return;
  }
  FieldScanner scanner(line, separator_);
  std::size_t column = 0;
  for (Field field; scanner.Next(field); ++column) {
    if (field.text.empty() || IsHemisphereWord(field.text, Axis::Latitude) ||
        IsHemisphereWord(field.text, Axis::Longitude)) {
      continue;
    }
    places_.resize(std::max(places_.size(), column + 1));
    places_[column].mayBeHemisphere = false;
  }
}

// Whether a field that is not chosen is a hemisphere: beside an angle of its axis, or with one of the other axis in the
// line. Between blanks only letters are.
bool Layout::IsHemisphereField(std::string_view text, const Place& place, Hemispheres& seen) const {
  if (!place.mayBeHemisphere || !CouldBeHemisphereWord(text) || (separator_ == ' ' && !IsAnyHemisphere(text))) {
    return false;
  }
  const bool ofLatitude = IsHemisphereWord(text, Axis::Latitude);
  const bool ofLongitude = IsHemisphereWord(text, Axis::Longitude);
  seen.latitude = seen.latitude || ofLatitude;
  seen.longitude = seen.longitude || ofLongitude;
  return (place.besideLatitude && ofLatitude) || (place.besideLongitude && ofLongitude) ||
         ((ofLatitude || ofLongitude) && seen.latitude && seen.longitude);
}

// Whether each angle has a hemisphere letter beside its number, or among its columns.
bool Layout::HaveOwnHemispheres(const Row& row) const {
  std::size_t place = 0;
  for (std::size_t wanted = 0; wanted < values_; ++wanted) {
    const std::size_t parts = wanted_[wanted].IsAngle() ? perAngle_ : 1;
    const auto* const begin = row.fields.begin() + place;
    if (wanted_[wanted].IsAngle() && std::none_of(begin, begin + parts, [](const Field& field) {
          const std::string_view text = field.text;
          return !text.empty() && (IsAnyHemisphere(text.substr(0, 1)) || IsAnyHemisphere(text.substr(text.size() - 1)));
        })) {
      return false;
    }
    place += parts;
  }
  return true;
}

std::size_t Layout::PlaceOf(std::size_t wanted) const {
  std::size_t place = 0;
  for (std::size_t i = 0; i < wanted; ++i) {
    place += wanted_[i].IsAngle() ? perAngle_ : 1;
  }
  return place;
}

std::string Layout::TextOf(const Row& row, std::size_t wanted) const {
  std::string text(row.texts[wanted]);
  const std::size_t place = PlaceOf(wanted);
  if (place < columns_.size() && row.fields[place].quoted) {
    for (std::size_t quote = text.find("\"\""); quote != std::string::npos; quote = text.find("\"\"", quote + 1)) {
      text.erase(quote, 1);
    }
  }
  return text;
}

bool Layout::ReadFields(std::string_view line, Row& row) const {
  row.fault = {};
  row.besideValues = false;
  row.whole = separator_ != ' ';
  std::fill_n(row.fields.begin(), columns_.size(), Field());
  row.texts.fill({});
  row.values.fill(NAN);
  FieldScanner scanner(line, separator_);
  std::size_t column = 0;
  std::size_t filled = 0;  // columns up to the last that is not empty
  Hemispheres seen;
  Field last;
  Field field;
  for (; scanner.Next(field); ++column) {
    filled = field.bytes.empty() ? filled : column + 1;
    last = field.bytes.empty() ? last : field;
    const Place place = column < places_.size() ? places_[column] : Place();
    if (place.chosen != None) {
      row.fields[static_cast<std::size_t>(place.chosen)] = field;  // NOLINT(bugprone-signed-char-misuse): a number
    } else if (angles_ && row.fault.reason == nullptr && IsHemisphereField(field.text, place, seen)) {
      row.fault = {LoneHemisphere, column + 1, field.bytes};
    }
  }
  row.columns = column;
  if (scanner.Fault() != nullptr) {
    row.fault = {scanner.Fault(), column + 1, scanner.Left()};
    row.whole = false;
  } else if (const Fault fault = CountFault(line, last, filled, row);
             fault.reason != nullptr && row.fault.reason == nullptr) {
    if (wantsAll) {  // which fields are the chosen ones is not known
      std::fill_n(row.fields.begin(), columns_.size(), Field());
    }
    row.fault = fault;
  }
  return row.fault.reason == nullptr;
}

bool Layout::Read(std::string_view line, Row& row) const {
  const bool reads = ReadFields(line, row);
  if (!reads && row.fault.reason != LoneHemisphere) {
    return false;
  }
  const Fault beside = row.fault;
  std::size_t place = 0;
  for (std::size_t wanted = 0; wanted < values_; ++wanted) {
    if (!ReadValue(wanted, place, row)) {
      row.fault.text = row.fault.text.data() == nullptr ? line : row.fault.text;
      row.fault = reads ? row.fault : beside;
      return false;
    }
    place += wanted_[wanted].IsAngle() ? perAngle_ : 1;
  }
  if (!reads && HaveOwnHemispheres(row)) {
    row.fault = {};
    return true;
  }
  row.besideValues = !reads;
  return reads;
}

}  // namespace latigo::cli
