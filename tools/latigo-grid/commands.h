// The commands of the program.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "raster.h"

namespace latigo::grids {

struct Options {
  std::string file, other, output, svg;
  std::string tolerance = "1mm";
  std::uint64_t maxSize = 256 << 20;  // bytes
  std::size_t points = 20000;
  std::uint64_t seed = 1;
  bool cut = false;
  double latitude = 0, longitude = 0;  // degrees
  SourceOptions source;
};

void RunMake(const Options& options);
void RunInfo(const Options& options);
void RunAt(const Options& options);
void RunCompare(const Options& options);

}  // namespace latigo::grids
