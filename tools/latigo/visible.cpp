#include "visible.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace latigo::cli {

namespace {

// The lowest character of each length, by number of continuation bytes.
constexpr std::uint32_t Lowest[] = {0, 0x80, 0x800, 0x10000};

bool IsPlain(std::uint32_t c) {
  const bool control = c < 0x20 || (c >= 0x7F && c < 0xA0);
  const bool direction =
      c == 0x61C || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
  const bool separator = c == 0x2028 || c == 0x2029;
  const bool surrogate = c >= 0xD800 && c < 0xE000;
  return !control && !direction && !separator && !surrogate && c < 0x110000;
}

// The length in bytes of the character at the front of the text if it is safe; 0 if its first byte is not.
std::size_t PlainLength(std::string_view text) {
  const auto first = static_cast<unsigned char>(text.front());
  if (first < 0x80) {
    return IsPlain(first) ? 1 : 0;
  }
  const std::size_t more = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : 1;
  if (first < 0xC0 || first >= 0xF8 || text.size() <= more) {
    return 0;
  }
  std::uint32_t c = first & (0x3FU >> more);
  for (const char next : text.substr(1, more)) {
    const auto byte = static_cast<unsigned char>(next);
    if ((byte & 0xC0U) != 0x80U) {
      return 0;
    }
    c = c << 6U | (byte & 0x3FU);
  }
  return c >= Lowest[more] && IsPlain(c) ? more + 1 : 0;
}

}  // namespace

std::string Visible(std::string_view text) {
  std::string visible;
  while (!text.empty()) {
    const std::size_t length = PlainLength(text);
    if (length > 0) {
      visible.append(text, 0, length);
      text.remove_prefix(length);
      continue;
    }
    constexpr const char* Digits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(text.front());
    visible += {'\\', 'x', Digits[byte >> 4U], Digits[byte & 0xFU]};
    text.remove_prefix(1);
  }
  return visible;
}

void Message(std::string_view text) {
  std::fprintf(stderr, "latigo: %s\n", Visible(text).c_str());
}

}  // namespace latigo::cli
