#include "loop.h"

#include <algorithm>
#include <thread>

namespace latigo::python {

namespace {

// The points of the arrays from a number on that are in one row: along the last dimension.
Row RowAt(const Arrays& arrays, std::int64_t number, std::int64_t end) {
  const std::size_t dimensions = arrays.shape.size();
  Row row;
  row.first = number;
  row.inputs = static_cast<int>(arrays.inputs.size());
  row.outputs = static_cast<int>(arrays.outputs.size());
  row.codes = arrays.codes;
  std::vector<std::ptrdiff_t> index(dimensions);
  std::int64_t rest = number;
  for (std::size_t i = dimensions; i-- > 0;) {
    index[i] = rest % arrays.shape[i];
    rest /= arrays.shape[i];
  }
  const std::ptrdiff_t length = dimensions > 0 ? arrays.shape.back() - index.back() : 1;
  row.count = std::min<std::int64_t>(length, end - number);
  const auto place = [&](const Operand& operand) {
    char* at = operand.data;
    for (std::size_t i = 0; i < dimensions; ++i) {
      at += index[i] * operand.strides[i];
    }
    return Row::Operand{at, dimensions > 0 ? operand.strides.back() : 0};
  };
  std::transform(arrays.inputs.begin(), arrays.inputs.end(), row.in.begin(), place);
  std::transform(arrays.outputs.begin(), arrays.outputs.end(), row.out.begin(), place);
  return row;
}

void ConvertRange(Operation operation, Handle& handle, const Options& options, const Arrays& arrays, std::int64_t begin,
                  std::int64_t end, bool stop, Summary& summary) {
  const RowConversion convert = RowConversionOf(operation);
  while (begin < end) {
    const Row row = RowAt(arrays, begin, end);
    if (!convert(handle, options, row, stop, summary)) {
      return;
    }
    begin += row.count;
  }
}

// Adds the summary of the points that follow.
void Append(Summary& all, const Summary& part) {
  if (all.first < 0 && part.first >= 0) {
    all.first = part.first;
    all.outcome = part.outcome;
  }
  for (std::size_t i = 0; i < cli::Doubts; ++i) {
    Summary::Doubtful& doubtful = all.doubtful[i];
    doubtful.first = doubtful.first < 0 ? part.doubtful[i].first : doubtful.first;
    doubtful.count += part.doubtful[i].count;
  }
}

}  // namespace

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
