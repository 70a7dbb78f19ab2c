// Shared by the fuzzers: numbers and texts from the fuzzer's bytes, files for the library, and the assertion that stops
// the process.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <string>

#include "../tests/grid_bytes.h"

namespace fuzz {

inline constexpr double Pi = 3.141592653589793, Degree = Pi / 180, Untouched = -12345;

#define REQUIRE(condition) \
  ((condition) ? void()    \
               : (std::fprintf(stderr, "%s:%d: does not hold: %s\n", __FILE__, __LINE__, #condition), std::abort()))

// Compares bits.
template <typename T>
bool Same(const T& left, const T& right) {
  return std::memcmp(&left, &right, sizeof left) == 0;
}

// The fuzzer's bytes, read from the front, followed by zeros.
struct Input {
  const std::uint8_t* data;
  std::size_t size;

  std::string Text(std::size_t length) {
    std::string text(reinterpret_cast<const char*>(data), std::min(length, size));
    data += text.size(), size -= text.size();
    return text;
  }
  template <typename T>
  T Take() {
    T value{};
    const std::string bytes = Text(sizeof value);
    std::memcpy(&value, bytes.data(), bytes.size());
    return value;
  }
  std::size_t Below(std::size_t limit) { return Take<std::uint8_t>() % limit; }
  // Often a limit, the middle, or a value close to one of them, where formulas have special cases.
  double Between(double low, double high) {
    const std::uint16_t place = Take<std::uint16_t>();
    const double middle = (low + high) / 2, beside = (high - middle) * std::pow(10, -(place >> 4 & 15));
    const double special[] = {low, high, middle, middle + beside, middle - beside};
    return place % 16 < 5 ? special[place % 16] : low + (high - low) * place / 65535;
  }
  // A number that is special to the library, one next to it, any bit pattern, or an angle or a length.
  double Number() {
    using Limits = std::numeric_limits<double>;
    // clang-format off
    constexpr double Known[] = {Pi / 2, -Pi / 2, Pi, -Pi, 0, 1, -1, -0.0, 2 * Pi, Pi / 4, 1e-9, -1e-9, 1e7, 1e300, -1e300,
                                Limits::denorm_min(), Limits::max(), Limits::infinity(), -Limits::infinity(),
                                Limits::quiet_NaN(), 6378137, 298.257223563, 0.3048};
    // clang-format on
    const std::size_t choice = Below(64);
    if (choice < std::size(Known)) { return Known[choice]; }
    if (choice < 26) { return std::nextafter(Known[Below(4)], Known[4 + Below(3)]); }
    if (choice >= 60) { return Take<double>(); }
    return Take<std::int16_t>() * (choice < 46 ? 1e-4 : choice < 54 ? 1.0 : 1e3);
  }
};

// A directory for this process. Files use only the C library, whose writes the memory sanitizer sees.
inline const std::string& Scratch() {
  static const struct Directory {
    std::string name;
    Directory() {
      const char* const parent = std::getenv("TMPDIR");
      name = std::string(parent != nullptr ? parent : "/tmp") + "/latigo-fuzz-XXXXXX";
      REQUIRE(mkdtemp(name.data()) != nullptr && mkdir((name + "/datum").c_str(), 0700) == 0);
      setenv("TWI_BATHYX", name.c_str(), 1);
    }
    ~Directory() { REQUIRE(std::system(("rm -rf '" + name + "'").c_str()) == 0); }
  } directory;
  return directory.name;
}

inline std::string WriteFile(const char* name, const std::string& bytes) {
  std::string path = Scratch() + "/" + name;
  std::FILE* const file = std::fopen(path.c_str(), "wb");
  REQUIRE(file != nullptr && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size() &&
          std::fclose(file) == 0);
  return path;
}

// The bytes of a file; empty if it cannot be read.
inline std::string ReadFile(const std::string& path) {
  std::string bytes;
  if (std::FILE* const file = std::fopen(path.c_str(), "rb"); file != nullptr) {
    for (int byte = 0; (byte = std::getc(file)) != EOF;) { bytes += static_cast<char>(byte); }
    std::fclose(file);
  }
  return bytes;
}

// The bytes of a grid file about (0, 0), with nodes one degree apart.
inline std::string SmallGrid(std::int32_t depth) {
  return support::Grid{.nz = depth, .west = -11, .lonstep = 1, .south = -1, .latstep = 1}.Bytes();
}

}  // namespace fuzz
