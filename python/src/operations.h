// The conversions of one point, as the command-line program does them: order of datum, projection and heights, and which
// results are failures.
#pragma once

#include <cstdint>

#include "handle.h"

namespace latigo::python {

enum class Operation : std::int32_t {
  Forward,
  Inverse,
  ToWgs84,
  FromWgs84,
  Scale,
  ScaleAtGrid,
  Undulation,
  Ecef,
  Geographic,
  GreatCircle,
  RhumbLine,
};

// Of a call.
struct Options {
  bool wgs84 = false;         // positions are WGS-84
  bool geoidOnDatum = false;  // undulations refer to the object's own ellipsoid, also for WGS-84 positions
  bool radians = false;       // angles are radians
  bool unshifted = false;     // points outside the datum grid are converted without a shift
  bool height = false;        // there is a height, in and out
};

// Of a point.
struct Outcome {
  std::int32_t code = 0;           // of the library, or a Fault; 0 for success
  const char* function = nullptr;  // the call that failed; null for a Fault
  bool unshifted = false;          // outside the datum grid, and converted without a shift
};

constexpr int MaxInputs = 4;
constexpr int MaxOutputs = 3;

using Conversion = Outcome (*)(Handle& handle, const Options& options, const double* in, double* out);

// The number of inputs and outputs: with a height, if the operation takes one.
int Inputs(Operation operation, const Options& options);
int Outputs(Operation operation, const Options& options);
Conversion ConversionOf(Operation operation);

// What a code means.
const char* TextOf(std::int32_t code, const char* function);

}  // namespace latigo::python
