// Lengths and sizes as people write them.
#pragma once

#include <string>

namespace latigo::grids {

// "0.9 mm", "1.2 cm", "3.4 m", three digits. LengthUp rounds up, and writes no blank, as an argument.
std::string Length(double metres);
std::string LengthUp(double metres);

// "1mm", "2.5 cm", "0.01 m", "0.01"; metres. Refuses anything else.
double ParseLength(const std::string& text);

// "12.3 MB"
std::string Bytes(double bytes);

// "-12.25", as many digits as tell a hundredth of an arc second.
std::string Degrees(double degrees);

}  // namespace latigo::grids
