// The input as a points file of the command-line program: lines, fields, and angles written and read again.
#include <charconv>
#include <string>
#include <utility>
#include <vector>

#include "error_text.h"
#include "fuzz_input.h"
#include "line_reader.h"
#include "line_writer.h"
#include "point_line.h"
#include "table_layout.h"

namespace {

using namespace fuzz;
using namespace latigo::cli;

void CheckLine(std::string_view line) {
  for (const Order order : {Order::LatitudeLongitude, Order::LongitudeLatitude, Order::Grid}) {
    const PointLine point = ParsePointLine(line, order), two = ParseTwoPoints(line, order);
    for (const std::string_view rest : {point.rest, point.restWithThird, two.rest}) { REQUIRE(line.ends_with(rest)); }
    REQUIRE(point.rest.size() <= point.restWithThird.size() && (two.fault != nullptr || point.fault == nullptr));
    if (point.fault != nullptr) { continue; }
    REQUIRE(std::isfinite(point.first + point.second + point.third.value_or(0) + two.toFirst + two.toSecond));
    REQUIRE(order == Order::Grid || (std::fabs(point.first) <= 90 && std::fabs(point.second) <= 360));
    REQUIRE(order == Order::Grid || (std::fabs(two.toFirst) <= 90 && std::fabs(two.toSecond) <= 360));
  }
}

// The parts of a text without those of the chosen fields.
std::vector<std::string> OtherParts(std::string_view line, const Row& row, std::size_t count) {
  std::vector<std::string> parts(1);
  for (std::size_t i = 0; i <= line.size(); ++i) {  // an empty field may be at the end
    bool inside = i == line.size();
    for (std::size_t place = 0; place < count; ++place) {
      const std::string_view bytes = row.fields[place].bytes;
      inside = inside || (bytes.data() <= line.data() + i && line.data() + i < bytes.data() + bytes.size());
      if (bytes.data() == line.data() + i) { parts.emplace_back(); }
    }
    if (!inside) { parts.back() += line[i]; }
  }
  return parts;
}

// A line of a table: chosen fields are parts of it, and with other values in them every other byte is read as before.
void CheckTable(std::string_view line) {
  static constexpr Wanted Point[] = {
      {Role::Latitude, "latitude"}, {Role::Longitude, "longitude"}, {Role::Number, "height", true}};
  Row row, again;
  for (const char separator : {',', ';', '\t', ' '}) {
    for (const bool decimalComma : {false, true}) {
      const Layout layout(separator, decimalComma, Point, {2, 0, 3}, 1);
      const bool good = layout.Read(line, row);
      for (std::size_t i = 0; i < 3; ++i) {
        const Field& field = row.fields[i];
        REQUIRE(field.bytes.data() == nullptr ||
                (line.data() <= field.bytes.data() &&
                 field.bytes.data() + field.bytes.size() <= line.data() + line.size()));
        REQUIRE(field.bytes.find(field.text) != std::string_view::npos);
      }
      REQUIRE(good == (row.fault.reason == nullptr) && (good || !FaultText(row.fault).empty()));
      const bool quotes = separator != ',' || !decimalComma || row.fields[2].quoted;
      if (!good || row.fields[2].bytes.data() == nullptr || !quotes) { continue; }
      REQUIRE(std::fabs(row.values[0]) <= 90 && std::fabs(row.values[1]) <= 360 &&
              row.Has(2) == std::isfinite(row.values[2]));
      std::string changed(line);
      for (const std::size_t place : {2U, 0U, 1U}) {  // from the last column to the first
        const Field& field = row.fields[place];
        changed.replace(static_cast<std::size_t>(field.bytes.data() - line.data()), field.bytes.size(),
                        field.quoted ? "\"7\"" : "7");
      }
      // Beside a hemisphere, an angle needs its own.
      const bool reads = layout.Read(changed, again);
      if (!reads && again.besideValues) { continue; }
      REQUIRE(reads && again.columns == row.columns);
      REQUIRE(again.values[0] == 7 && again.values[1] == 7 && again.values[2] == 7);
      REQUIRE(OtherParts(line, row, 3) == OtherParts(changed, again, 3));
    }
  }
}

// A word read as a number is a whole number word for the C library too, with the same value.
void CheckNumber(std::string word) {
  const Parsed parsed = ParseNumber(word);
  if (word.starts_with("\u2212") || word.starts_with("\u2013")) { word.replace(0, 3, "-"); }  // a typographic minus
  char* end = nullptr;
  const double value = std::strtod(word.c_str(), &end);
  REQUIRE(parsed.fault != nullptr || (end == word.c_str() + word.size() && Same(parsed.value, value)));
}

// A written angle is read with the same value, to the last digit written.
void CheckWritten(double degrees, Axis axis, int precision) {
  char text[64];
  const char* const end = WriteDms(text, degrees, axis, precision);
  REQUIRE(end <= text + sizeof text);
  const Parsed back = ParseAngle({text, static_cast<std::size_t>(end - text)}, axis);
  const double digit = std::pow(10.0, -precision) / 3600;
  REQUIRE(back.fault == nullptr && std::fabs(back.value - degrees) <= 0.5 * digit + 2e-13);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in{data, size};
  const double degrees = in.Below(2) != 0 ? in.Number() : in.Number() / Degree;
  const int precision = static_cast<int>(in.Below(16));
  if (std::fabs(degrees) <= 90) { CheckWritten(degrees, Axis::Latitude, precision); }
  if (std::fabs(degrees) <= 360) { CheckWritten(degrees, Axis::Longitude, precision); }
  if (std::fabs(degrees) <= 360) { CheckWritten(std::fabs(degrees), Axis::Azimuth, precision); }
  // Numbers are written with the digits of the standard library, except for the sign of a zero.
  Writer writer;
  writer.Number(degrees, precision);
  char digits[400];
  const char* const end =
      std::to_chars(digits, digits + sizeof digits, degrees, std::chars_format::fixed, precision).ptr;
  REQUIRE(!std::isfinite(degrees) || std::string_view(digits, end).ends_with(writer.Written()));
  // Sometimes a file so long that the reader's buffer grows or is refilled.
  const std::size_t times = in.Below(64) == 0 ? 1000 : 1;
  const std::string piece = in.Text(in.size);
  std::string bytes;
  for (std::size_t i = 0; i < times; ++i) { bytes += piece; }

  BlockReader reader(WriteFile("points", bytes));
  const bool zeros = bytes.size() > 1 && (bytes[0] == 0) != (bytes[1] == 0);
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF") || zeros) {  // UTF-16 is refused
    Block refused;
    bool thrown = false;
    try {
      reader.Next(refused);
    } catch (const UsageError&) { thrown = true; }
    REQUIRE(thrown || refused.cut);
    return 0;
  }
  if (bytes.starts_with("\xEF\xBB\xBF")) { bytes.erase(0, 3); }
  std::size_t place = 0, number = 0;
  for (Block block; reader.Next(block);) {
    REQUIRE(block.firstLine == number + 1);
    std::string_view text = block.bytes;
    for (std::string_view line; block.cut ? std::exchange(text, {}).size() > 0 : NextLine(text, line);) {
      REQUIRE(place < bytes.size());
      const std::size_t feed = std::min(bytes.find('\n', place), bytes.size());
      std::string_view wanted = std::string_view(bytes).substr(place, feed - place);
      place = feed + 1;
      ++number;
      if (wanted.ends_with('\r') && !block.cut) { wanted.remove_suffix(1); }
      REQUIRE(block.cut ? wanted.size() >= 1 << 20 && wanted.starts_with(block.bytes) : line == wanted);
      if (number < 200 && !block.cut) {
        CheckLine(line);
        CheckTable(line);
        CheckNumber(std::string(line.substr(0, line.find_first_of(std::string_view(" \t,\0", 4)))));
      }
    }
  }
  REQUIRE(place >= bytes.size());
  return 0;
}
