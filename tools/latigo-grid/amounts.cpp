#include "amounts.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "surface.h"

namespace latigo::grids {

namespace {

std::string Format(const char* format, double value, const char* unit) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return std::string(text) + unit;
}

}  // namespace

std::string Length(double metres) {
  const double size = std::fabs(metres);
  return size < 0.00995 ? Format("%.3g", metres * 1000, " mm")
         : size < 0.995 ? Format("%.3g", metres * 100, " cm")
                        : Format("%.4g", metres, " m");
}

std::string LengthUp(double metres) {
  if (!(metres > 0)) {
    return "0mm";
  }
  const double digits = std::pow(10, std::floor(std::log10(metres)) - 1);
  return Format("%.6g", std::ceil(metres / digits * (1 + 1e-9)) * digits * 1000, "mm");
}

double ParseLength(const std::string& text) {
  double value = 0;
  const auto [rest, fault] = std::from_chars(text.data(), text.data() + text.size(), value);
  std::string unit(rest, text.data() + text.size());
  unit.erase(0, unit.find_first_not_of(' '));
  const double factor = unit == "mm" ? 0.001 : unit == "cm" ? 0.01 : unit == "m" || unit.empty() ? 1 : 0;
  if (fault != std::errc() || !(value * factor > 0) || !std::isfinite(value)) {
    throw Refused(text + " is no length such as 1mm, 2.5cm or 0.01");
  }
  return value * factor;
}

std::string Bytes(double bytes) {
  return bytes < 1e6   ? Format("%.3g", bytes / 1e3, " kB")
         : bytes < 1e9 ? Format("%.3g", bytes / 1e6, " MB")
                       : Format("%.4g", bytes / 1e9, " GB");
}

std::string Degrees(double degrees) {
  return Format("%.8g", degrees, "");
}

}  // namespace latigo::grids
