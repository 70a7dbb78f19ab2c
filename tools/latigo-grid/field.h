// A public grid in memory, with the interpolation that its format prescribes.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "surface.h"

namespace latigo::grids {

inline constexpr double FloatRounding = 1.6e-5;  // degrees; twice that of a float32 near 180

struct Axis {
  double start = 0, step = 0;  // degrees; the first node is the southern or western one
  int nodes = 0;

  double At(int node) const { return start + step * node; }
  double End() const { return At(nodes - 1); }
};

// One lattice of nodes; NTv2 and GeoTIFF files may hold several.
struct Layer {
  std::string name, parent;
  Axis latitude, longitude;
  int depth = 1;
  bool periodic = false;      // the first column follows the last, all around the earth
  std::vector<float> values;  // by rows from the south, in a row by columns from the west; NaN for no value

  const float* Node(int row, int col) const {
    const auto cols = static_cast<std::size_t>(longitude.nodes);
    return &values[(static_cast<std::size_t>(row) * cols + static_cast<std::size_t>(col)) *
                   static_cast<std::size_t>(depth)];
  }
};

enum class Interpolation { Bilinear, Bicubic };

class Field : public Surface {
 public:
  Kind kind = Kind::Geoid;
  Interpolation interpolation = Interpolation::Bilinear;
  std::string format;              // "GTX", "NTv2", ...
  std::string from, to;            // names of the datums, where the file has them
  bool knowsEllipsoid = false;     // the file names that of the object's datum
  Ellipsoid ellipsoid;             // of the object's datum
  std::vector<std::string> notes;  // what a user should know
  bool inverted = false;           // the file leads from WGS-84 to the object's datum
  bool atWgs84 = false;            // of two values: positions are on WGS-84, and not on the object's datum
  std::vector<Layer> layers;       // the finest first

  Kind TheKind() const override { return kind; }
  Area Limits() const override;
  // Whether the file's shifts belong to positions on the other datum than those that are asked.
  bool Iterates() const { return kind == Kind::Shift && inverted != atWgs84; }
  bool At(double latitude, double longitude, Values& values) const override;

 private:
  // As the file has it. Positions beyond the limits by no more than `beyond` degrees continue the cell there.
  bool AsStored(double latitude, double longitude, double beyond, Values& values) const;
  bool Iterated(double latitude, double longitude, Values& values) const;
};

// Degrees east of the start, 0 to 360; a position west of it by no more than `slack` is a small negative number.
double EastOf(double start, double longitude, double slack = FloatRounding);

}  // namespace latigo::grids
