// The lattice of a grid file: origin in float32 degrees, steps of whole arc seconds.
#pragma once

#include <cstdint>

#include "surface.h"

namespace latigo::grids {

struct Lattice {
  float west = 0, south = 0;     // degrees, of the first column and row
  int lonStep = 0, latStep = 0;  // arc seconds
  std::int64_t cols = 0, rows = 0;
  int depth = 1;

  double LatitudeOf(std::int64_t row) const { return double{south} + static_cast<double>(row * latStep) / 3600; }
  double LongitudeOf(std::int64_t col) const { return double{west} + static_cast<double>(col * lonStep) / 3600; }
  double West() const { return double{west}; }
  double South() const { return double{south}; }
  double North() const { return LatitudeOf(rows - 1); }
  double East() const { return LongitudeOf(cols - 1); }

  Area Limits() const { return {South(), West(), North(), East()}; }

  // In a file that ends beyond 180 the library looks for western longitudes 360 degrees further east. The limit is
  // computed as it does.
  bool LosesLongitudes() const {
    return west < 0 && double{west} * Pi / 180 + lonStep / 3600.0 * Pi / 180 * static_cast<double>(cols - 1) > Pi;
  }

  std::int64_t RecordBytes() const { return cols * depth * 4 + 4; }
  std::int64_t FileBytes() const { return RecordBytes() * (rows + 1); }
};

inline constexpr std::int64_t HeaderBytes = 96;
inline constexpr std::int64_t MaxRecordBytes = 64 << 20;                   // longer ones are refused by the library
inline constexpr std::int64_t MaxFileBytes = (std::int64_t{1} << 31) - 1;  // for readers whose offsets have 32 bits

inline constexpr int MaxStep = 1296000;  // arc seconds; float32 keeps whole ones up to there

// Whether the library reads such a file, and each record holds the header.
inline bool Fits(const Lattice& lattice) {
  return lattice.cols > 0 && lattice.rows > 0 && lattice.depth > 0 && lattice.lonStep > 0 && lattice.latStep > 0 &&
         lattice.lonStep <= MaxStep && lattice.latStep <= MaxStep && !lattice.LosesLongitudes() &&
         lattice.cols <= MaxRecordBytes / 4 / lattice.depth && lattice.rows <= MaxFileBytes / HeaderBytes &&
         lattice.RecordBytes() >= HeaderBytes && lattice.RecordBytes() <= MaxRecordBytes &&
         lattice.FileBytes() <= MaxFileBytes;
}

}  // namespace latigo::grids
