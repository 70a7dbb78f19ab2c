#include "section.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <stdexcept>

namespace latigo::system {

namespace {

// In this order they are written.
constexpr std::string_view Keys[] = {
    "Projection",      "SemiMajorAxis", "Flattening",    "Unit",          "VertUnit",    "ScaleFactor",
    "CentralMeridian", "RefLatitude",   "NorthParallel", "SouthParallel", "SkewAzimuth", "FalseEasting",
    "FalseNorthing",   "DynDatum",      "DeltaX",        "DeltaY",        "DeltaZ",      "DeltaScale",
    "DeltaRX",         "DeltaRY",       "DeltaRZ",       "AdjustType",    "ReverseX",    "ReverseY",
    "AdjustRotation",  "AdjustScale",   "AdjustX",       "AdjustY",       "AdjustOrigX", "AdjustOrigY"};

}  // namespace

std::string Digits(double value) {
  char buffer[32];
  const double magnitude = std::abs(value);
  const bool plain = magnitude == 0 || (magnitude >= 1e-6 && magnitude < 1e15);
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value == 0 ? 0 : value,  // 0 without a sign
                                 plain ? std::chars_format::fixed : std::chars_format::scientific);
  return {buffer, end.ptr};
}

double Clean(double value) {
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "%.13g", value);
  const double shorter = std::strtod(buffer, nullptr);
  return std::abs(shorter - value) <= 4 * std::numeric_limits<double>::epsilon() * std::abs(value) ? shorter : value;
}

std::string OneLine(std::string_view text) {
  std::string line(text);
  std::replace_if(
      line.begin(), line.end(), [](unsigned char c) { return c < ' ' || c == 0x7f; }, ' ');
  return line;
}

void Section::Set(std::string_view key, std::string_view value) {
  const auto found = std::find_if(keys_.begin(), keys_.end(), [&](const auto& pair) { return pair.first == key; });
  if (found != keys_.end()) {
    found->second = OneLine(value);
  } else {
    keys_.emplace_back(key, OneLine(value));
  }
}

void Section::Set(std::string_view key, double value) {
  if (!std::isfinite(value)) {
    throw std::domain_error(std::string(key) + " is not finite");
  }
  if (value != 0 || !Value(key).empty()) {
    Set(key, Digits(value));
  }
}

double Section::Number(std::string_view key) const {
  return std::strtod(Value(key).c_str(), nullptr);
}

std::string Section::Value(std::string_view key) const {
  const auto found = std::find_if(keys_.begin(), keys_.end(), [&](const auto& pair) { return pair.first == key; });
  return found != keys_.end() ? found->second : "";
}

std::string Section::Write(std::string_view name) const {
  std::string title = OneLine(name);
  std::replace(title.begin(), title.end(), ']', ')');  // it would end the title
  std::string text = "[" + title + "]\n";
  for (const std::string& comment : comments_) {
    text += "; " + comment + "\n";
  }
  for (const std::string_view key : Keys) {
    if (const std::string value = Value(key); !value.empty()) {
      text.append(key).append("=").append(value).append("\n");
    }
  }
  return text;
}

}  // namespace latigo::system
