// Lines of output; nothing is allocated per line.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "angle.h"

namespace latigo::cli {

// A buffer of text.
class Writer {
 public:
  void Text(std::string_view text) { text_.append(text); }
  void Char(char c) { text_.push_back(c); }
  // A number with `precision` decimals; never "-0".
  void Number(double value, int precision);
  void Dms(double degrees, Axis axis, int precision);

  // Replaces the decimal points from a place on by commas.
  void UseComma(std::size_t begin);

  const std::string& Written() const { return text_; }

 private:
  // For numbers of ordinary size; returns false and writes nothing for others.
  bool ShortNumber(double value, int precision);

  std::string text_;
};

}  // namespace latigo::cli
