// How far two surfaces differ, measured at random points.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "field.h"
#include "grid_file.h"

namespace latigo::grids {

// Of the lengths of differences, metres.
struct Statistics {
  std::size_t points = 0;
  double rms = 0, percentile99 = 0, maximum = 0;
  double latitude = 0, longitude = 0;  // where the maximum is
  std::size_t onlyOne = 0;             // points at which only one of the two has a value

  std::string Text() const;  // in one line
};

struct Point {
  double latitude, longitude;
};

// Uniform in latitude and longitude; the same for a seed on every machine.
std::vector<Point> RandomPoints(const Area& area, std::size_t count, std::uint64_t seed);

// Points where the blend of the library differs most from a straight line, in the steepest of random cells.
std::vector<Point> SteepPoints(const Field& source, const Lattice& lattice, std::size_t count, std::uint64_t seed);

// Points just outside the sub-grids, at most `count` along a side: there the library blends the nodes of both, and the
// source has only the coarser. None if the source has one lattice.
std::vector<Point> BorderPoints(const Field& source, const Lattice& lattice, std::size_t count);

Statistics Measure(const Surface& one, const Surface& other, std::vector<Point> points);

// The other direction of a datum grid. Where the file holds the exact answers for positions on one datum, the library
// takes them at positions on the other as well, without iteration; the source's answer is iterated. `toWgs84` is that
// direction.
Statistics MeasureOther(const LibraryGrid& library, const Surface& source, bool toWgs84, std::vector<Point> points);

}  // namespace latigo::grids
