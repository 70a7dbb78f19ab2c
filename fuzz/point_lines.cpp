// The input as a points file of the command-line program: lines, fields, and angles written and read again.
#include <charconv>
#include <utility>

#include "fuzz_input.h"
#include "line_reader.h"
#include "line_writer.h"
#include "point_line.h"

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

// A word read as a number is a whole number word for the C library too, with the same value.
void CheckNumber(const std::string& word) {
  const Parsed parsed = ParseNumber(word);
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
        CheckNumber(std::string(line.substr(0, line.find_first_of(std::string_view(" \t,\0", 4)))));
      }
    }
  }
  REQUIRE(place >= bytes.size());
  return 0;
}
