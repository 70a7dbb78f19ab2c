// Text tables of claims; claims/README.md has the notation.
#pragma once

#include <algorithm>
#include <sstream>

#include "support.h"

namespace support {

// A sum of numbers, each with or without a unit of degrees, minutes or seconds of arc, and of the flags of a local grid:
// 52d30m, 0.7+1.5s, nan, -inf, 1+reverse-x. Or a multiple of a right angle: pi/2, -pi. Degrees become radians as they
// do in a configuration file, to the last bit.
inline double ToNumber(std::string text) {
  for (const auto& [name, value] : {std::pair{"pi", Pi}, {"-pi", -Pi}, {"pi/2", HalfPi}, {"-pi/2", -HalfPi}}) {
    if (text == name) { return value; }
  }
  double sum = -0.0;
  for (const auto& [flag, bit] : {std::pair{"+reverse-x", LATIGO_REVERSE_X}, {"+reverse-y", LATIGO_REVERSE_Y}}) {
    if (const std::size_t at = text.find(flag); at != std::string::npos) {
      sum += bit;
      text.erase(at, 10);
    }
  }
  for (const char* at = text.c_str(); *at != '\0';) {
    char* end = nullptr;
    const double value = std::strtod(at, &end);
    if (end == at) { throw std::invalid_argument(text); }
    constexpr double Degree = 0.017453292519943295;
    const double unit = *end == 'd' ? Degree : *end == 'm' ? Degree / 60 : *end == 's' ? Second : 0;
    sum += unit == 0 ? value : value * unit;
    at = unit == 0 ? end : end + 1;
  }
  return sum;
}

inline constexpr double Untouched = -12345;

// An expected result: a number within a tolerance, "-" for one that is not written, "?" for any.
struct Expectation {
  std::string text;
  double tolerance;

  void Test(double found) const {
    if (text == "-") {
      EXPECT_EQ(found, Untouched);
    } else if (text == "nan") {
      EXPECT_TRUE(std::isnan(found)) << found;
    } else if (text != "?") {
      const double value = ToNumber(text);
      EXPECT_TRUE(found == value || std::fabs(found - value) <= tolerance)
          << testing::PrintToString(found) << " instead of " << text << ", off by " << found - value;
    }
  }
};

// word argument ... = expected ... ~tolerance code number
struct Row {
  std::string place;  // file and line
  std::string word;
  std::vector<std::string> arguments;
  std::vector<Expectation> expected;
  std::string expectedText;  // the same as one text
  std::int32_t code = 0;
  std::vector<std::int32_t> logs;  // codes of the log lines
};

inline std::vector<Row> ReadTable(const std::string& name) {
  std::ifstream file(std::string(LATIGO_CLAIMS "/") + name + ".txt");
  std::vector<Row> rows;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    line = line.substr(0, line.find('#'));
    line.resize(line.find_last_not_of(' ') + 1);
    Row row;
    row.place = name + ".txt:" + std::to_string(++number);
    const std::size_t equals = line.find(" = ");
    std::istringstream call(line.substr(0, equals));
    if (!(call >> row.word)) { continue; }
    for (std::string word; call >> word;) { row.arguments.push_back(word); }
    row.expectedText = equals == std::string::npos ? "" : line.substr(equals + 3);
    std::istringstream results(row.expectedText);
    for (std::string word; results >> word;) {
      const std::size_t wave = word.find('~');
      const double tolerance = wave == std::string::npos ? 0 : ToNumber(word.substr(wave + 1));
      if (word == "code") {
        results >> row.code;
      } else if (word == "logs") {
        for (std::int32_t log = 0; results >> log;) { row.logs.push_back(log); }
      } else if (wave == 0) {
        for (Expectation& each : row.expected) { each.tolerance = tolerance; }
      } else {
        row.expected.push_back({word.substr(0, wave), tolerance});
      }
    }
    rows.push_back(row);
  }
  return rows;
}

}  // namespace support
