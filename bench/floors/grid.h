#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>
#include <utility>
#include <vector>

#include "floors/ellipsoid.h"
#include "grid_file.h"

namespace bench {

// A grid read as by the library: two rows in memory. Rows that the next point needs are kept; the others are read by
// one system call directly into place.
class GridFloor {
 public:
  explicit GridFloor(const GridFile& grid)
      : file_(open(grid.path.c_str(), O_RDONLY)),
        south_(grid.South()),
        west_(grid.West()),
        invStep_(1 / grid.Step()),
        depth_(grid.depth),
        rowValues_(static_cast<std::size_t>(grid.columns * grid.depth) + 1),
        rows_(2 * rowValues_),
        low_(rows_.data()),
        high_(low_ + rowValues_) {
    if (file_ < 0) {
      throw std::runtime_error(grid.path + " cannot be opened");
    }
  }
  ~GridFloor() { close(file_); }
  GridFloor(const GridFloor&) = delete;
  GridFloor& operator=(const GridFloor&) = delete;

  // `Depth` values of a point within the grid.
  template <int Depth>
  void Lookup(double phi, double lambda, double* values) {
    const double row = (phi - south_) * invStep_;
    const double column = (lambda - west_) * invStep_;
    const auto r = static_cast<std::int32_t>(row);
    const auto c = static_cast<std::int32_t>(column);
    if (r != row_) {
      Move(r);
    }
    const double v = Smooth(column - c);
    const double u = Smooth(row - r);
    const float* low = low_ + 1 + c * Depth;
    const float* high = high_ + 1 + c * Depth;
    for (int i = 0; i < Depth; ++i) {
      const double south = low[i] + v * (double{low[i + Depth]} - low[i]);
      const double north = high[i] + v * (double{high[i + Depth]} - high[i]);
      values[i] = south + u * (north - south);
    }
  }

 private:
  // S(t); the four weights are the products of S and 1 - S along both axes.
  static double Smooth(double t) { return t * t * (3 - 2 * t); }

  void Move(std::int32_t row) {
    if (row == row_ + 1) {
      std::swap(low_, high_);
      Read(row + 1, high_, 1);
    } else if (row == row_ - 1) {
      std::swap(low_, high_);
      Read(row, low_, 1);
    } else {
      low_ = rows_.data();
      high_ = low_ + rowValues_;
      Read(row, low_, 2);
    }
    row_ = row;
  }

  void Read(std::int32_t row, float* to, std::size_t count) {
    const std::size_t bytes = rowValues_ * sizeof(float);
    const std::size_t size = count * bytes;
    if (pread(file_, to, size, (row + 1) * static_cast<off_t>(bytes)) != static_cast<ssize_t>(size)) {
      throw std::runtime_error("a grid row cannot be read");
    }
  }

  const int file_;
  const double south_, west_, invStep_;
  const int depth_;
  const std::size_t rowValues_;
  std::vector<float> rows_;
  float* low_;
  float* high_;
  std::int32_t row_ = -2;  // the southern row in memory; -2, which is not adjacent to any row, for none
};

}  // namespace bench
