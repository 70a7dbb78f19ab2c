// The bytes of a grid file.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>

namespace support {

// 3 rows of 23 columns, the smallest records that can contain the header. The values are a function of row, column and
// index.
struct Grid {
  std::int32_t nz = 1, nc = 23, nr = 3;
  float west = 10, lonstep = 0.25F, south = 50, latstep = 0.25F;
  std::string magic = "TIDEWRAK";
  std::function<float(int row, int col, int i)> value = [](int row, int col, int i) {
    return static_cast<float>(100 * row + 10 * col + i);
  };

  std::string Header() const {
    std::string bytes = "A grid of corrections for test";
    bytes.resize(56, '\0');
    const double values[] = {1.5, -2.5};
    std::memcpy(&bytes[32], values, sizeof values);
    bytes += (magic + std::string(8, ' ')).substr(0, 8);
    const std::int32_t counts[] = {nc, nr, nz};
    const float places[] = {west, lonstep, south, latstep, 0};
    bytes.append(reinterpret_cast<const char*>(counts), sizeof counts);
    return bytes.append(reinterpret_cast<const char*>(places), sizeof places);
  }

  std::string Bytes() const {
    std::string bytes = Header();
    bytes.resize(std::max<std::size_t>(static_cast<std::size_t>(nc * nz * 4 + 4), 96), '\x7F');
    for (int row = 0; row < nr; ++row) {
      bytes.append("lead");
      for (int node = 0; node < nc * nz; ++node) {
        const float word = value(row, node / nz, node % nz);
        bytes.append(reinterpret_cast<const char*>(&word), sizeof word);
      }
    }
    return bytes;
  }
};

}  // namespace support
