// The conversions of one point, as the command-line program does them: order of datum, projection and heights, and
// which results are failures.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "doubts.h"
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
  unsigned doubts = 0;             // bits of `cli::Doubt`: converted, but doubtful
};

constexpr int MaxInputs = 4;
constexpr int MaxOutputs = 3;

// Converts one point and checks the results. On failure all of `out` is NaN.
using Conversion = Outcome (*)(Handle& handle, const Options& options, int outputs, const double* in, double* out);

// Points at equal distances in memory.
struct Row {
  struct Operand {
    char* data;
    std::ptrdiff_t stride;  // bytes
  };
  std::int64_t first = 0;  // number of the first point
  std::int64_t count = 0;
  int inputs = 0;
  int outputs = 0;
  std::array<Operand, MaxInputs> in{};
  std::array<Operand, MaxOutputs> out{};
  std::int32_t* codes = nullptr;  // of the points, from number 0; null for none
};

// What happened in a loop. A failed point is NaN in every output.
struct Summary {
  std::int64_t first = -1;  // number of the first failed point in the order of C, -1 for none
  Outcome outcome;          // its outcome
  // For each doubt, in the order of its bits: the number of doubtful points, and that of the first of them.
  struct Doubtful {
    std::int64_t count = 0;
    std::int64_t first = -1;
  };
  std::array<Doubtful, cli::Doubts> doubtful{};
};

// Converts a row. `stop`: it may end at its first failure, and then returns false.
using RowConversion = bool (*)(Handle& handle, const Options& options, const Row& row, bool stop, Summary& summary);

// The number of inputs and outputs: with a height, if the operation takes one.
int Inputs(Operation operation, const Options& options);
int Outputs(Operation operation, const Options& options);
Conversion ConversionOf(Operation operation);
RowConversion RowConversionOf(Operation operation);

// What a code means.
const char* TextOf(std::int32_t code, const char* function);

}  // namespace latigo::python
