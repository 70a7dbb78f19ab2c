// Comparison of names without regard to case, the same in every locale.
#pragma once

#include <algorithm>
#include <string_view>

namespace latigo {

constexpr char AsciiLower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

constexpr bool EqualIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char l, char r) { return AsciiLower(l) == AsciiLower(r); });
}

}  // namespace latigo
