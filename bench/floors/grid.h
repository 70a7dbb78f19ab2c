#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <stdexcept>
#include <vector>

#include "floors/ellipsoid.h"
#include "grid_file.h"

namespace bench {

// A grid read as the library reads it: two rows in memory, and for another cell one seek and two reads, by bare system
// calls into the place where the values are needed.
class GridFloor {
 public:
  explicit GridFloor(const GridFile& grid)
      : file_(open(grid.path.c_str(), O_RDONLY)),
        south_(grid.South()),
        west_(grid.West()),
        invStep_(1 / grid.Step()),
        depth_(grid.depth),
        rowValues_(static_cast<std::size_t>(grid.columns * grid.depth) + 1),
        rows_(2 * rowValues_) {
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
    if (r != row_ || c != column_) {
      Read(r);
      row_ = r;
      column_ = c;
    }
    const double v = Smooth(column - c);
    const double u = Smooth(row - r);
    const float* low = rows_.data() + 1 + c * Depth;
    const float* high = low + rowValues_;
    for (int i = 0; i < Depth; ++i) {
      const double south = low[i] + v * (double{low[i + Depth]} - low[i]);
      const double north = high[i] + v * (double{high[i + Depth]} - high[i]);
      values[i] = south + u * (north - south);
    }
  }

 private:
  // S(t); the four weights are the products of S and 1 - S along both axes.
  static double Smooth(double t) { return t * t * (3 - 2 * t); }

  void Read(std::int32_t row) {
    const std::size_t bytes = rowValues_ * sizeof(float);
    if (lseek(file_, (row + 1) * static_cast<off_t>(bytes), SEEK_SET) < 0 ||
        read(file_, rows_.data(), bytes) != static_cast<ssize_t>(bytes) ||
        read(file_, rows_.data() + rowValues_, bytes) != static_cast<ssize_t>(bytes)) {
      throw std::runtime_error("a grid row cannot be read");
    }
  }

  const int file_;
  const double south_, west_, invStep_;
  const int depth_;
  const std::size_t rowValues_;
  std::vector<float> rows_;
  std::int32_t row_ = -1, column_ = -1;
};

}  // namespace bench
