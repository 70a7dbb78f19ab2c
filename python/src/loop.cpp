#include "loop.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <thread>

namespace latigo::python {

namespace {

// The place of a point in the arrays: its index in each dimension and the addresses of its operands.
class Cursor {
 public:
  Cursor(const std::vector<std::ptrdiff_t>& shape, const std::vector<Operand>& operands, std::int64_t number)
      : shape_(shape), operands_(operands), index_(shape.size()) {
    for (std::size_t i = shape.size(); i-- > 0;) {
      index_[i] = number % shape[i];
      number /= shape[i];
    }
    for (std::size_t k = 0; k < operands.size(); ++k) {
      at_[k] = operands[k].data;
      for (std::size_t i = 0; i < shape.size(); ++i) {
        at_[k] += index_[i] * operands[k].strides[i];
      }
    }
  }

  double* At(std::size_t operand) const { return reinterpret_cast<double*>(at_[operand]); }

  void Next() {
    for (std::size_t i = shape_.size(); i-- > 0;) {
      const bool more = ++index_[i] < shape_[i];
      for (std::size_t k = 0; k < operands_.size(); ++k) {
        const std::ptrdiff_t stride = operands_[k].strides[i];
        at_[k] += more ? stride : stride * (1 - shape_[i]);
      }
      if (more) {
        return;
      }
      index_[i] = 0;
    }
  }

 private:
  const std::vector<std::ptrdiff_t>& shape_;
  const std::vector<Operand>& operands_;
  std::vector<std::ptrdiff_t> index_;
  std::array<char*, MaxInputs> at_{};
};
static_assert(MaxOutputs <= MaxInputs);

void ConvertRange(Operation operation, Handle& handle, const Options& options, const Arrays& arrays, std::int64_t begin,
                  std::int64_t end, bool stop, Summary& summary) {
  const Conversion conversion = ConversionOf(operation);
  Cursor from(arrays.shape, arrays.inputs, begin);
  Cursor to(arrays.shape, arrays.outputs, begin);
  std::array<double, MaxInputs> in{};
  std::array<double, MaxOutputs> out{};
  for (std::int64_t i = begin; i < end; ++i, from.Next(), to.Next()) {
    for (std::size_t k = 0; k < arrays.inputs.size(); ++k) {
      in[k] = *from.At(k);
    }
    const Outcome outcome =
        ConvertPoint(conversion, handle, options, static_cast<int>(arrays.outputs.size()), in.data(), out.data());
    for (std::size_t k = 0; k < arrays.outputs.size(); ++k) {
      *to.At(k) = out[k];
    }
    if (arrays.codes != nullptr) {
      arrays.codes[i] = outcome.code;
    }
    if (outcome.code != 0) {
      if (summary.first < 0) {
        summary.first = i;
        summary.outcome = outcome;
      }
      if (stop) {
        return;
      }
    } else if (outcome.unshifted && summary.unshifted++ == 0) {
      summary.firstUnshifted = i;
    }
  }
}

// Adds the summary of the points that follow.
void Append(Summary& all, const Summary& part) {
  if (all.first < 0 && part.first >= 0) {
    all.first = part.first;
    all.outcome = part.outcome;
  }
  all.firstUnshifted = all.firstUnshifted < 0 ? part.firstUnshifted : all.firstUnshifted;
  all.unshifted += part.unshifted;
}

}  // namespace

Outcome ConvertPoint(Conversion conversion, Handle& handle, const Options& options, int outputs, const double* in,
                     double* out) {
  Outcome outcome = conversion(handle, options, in, out);
  if (outcome.code == 0 && !std::all_of(out, out + outputs, [](double value) { return std::isfinite(value); })) {
    outcome.code = NotFinite;
  }
  if (outcome.code != 0) {
    std::fill_n(out, outputs, std::numeric_limits<double>::quiet_NaN());
  }
  return outcome;
}

Summary ConvertArrays(Operation operation, const std::vector<Handle*>& handles, const Options& options,
                      const Arrays& arrays, bool stop) {
  std::int64_t count = 1;
  for (const std::ptrdiff_t length : arrays.shape) {
    count *= length;
  }
  if (count == 0) {
    return {};
  }
  const auto parts = static_cast<std::int64_t>(handles.size());
  std::vector<Summary> summaries(handles.size());
  const auto convert = [&](std::int64_t part) {
    ConvertRange(operation, *handles[static_cast<std::size_t>(part)], options, arrays, count * part / parts,
                 count * (part + 1) / parts, stop, summaries[static_cast<std::size_t>(part)]);
  };
  {
    std::vector<std::jthread> threads;
    for (std::int64_t part = 1; part < parts; ++part) {
      threads.emplace_back(convert, part);
    }
    convert(0);
  }
  Summary all;
  for (const Summary& summary : summaries) {
    Append(all, summary);
  }
  return all;
}

}  // namespace latigo::python
