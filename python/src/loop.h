// Conversion of arrays: points at any strides, in one or more threads, without the interpreter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "operations.h"

namespace latigo::python {

// An operand of a loop. Strides are bytes, one for each dimension of the loop.
struct Operand {
  char* data = nullptr;
  std::vector<std::ptrdiff_t> strides;
};

struct Arrays {
  std::vector<std::ptrdiff_t> shape;
  std::vector<Operand> inputs;    // float64
  std::vector<Operand> outputs;   // float64
  std::int32_t* codes = nullptr;  // one for each point in the order of C; null for none
};

// Converts all points with as many threads as there are handles; handles may be the same object if it has no files.
// `stop`: the loop may end at the first failure; points before it are converted.
Summary ConvertArrays(Operation operation, const std::vector<Handle*>& handles, const Options& options,
                      const Arrays& arrays, bool stop);

}  // namespace latigo::python
