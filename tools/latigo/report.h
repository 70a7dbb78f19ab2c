// The output of the commands that convert points: blocks of lines in order, messages, and the summary of warnings.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "converter.h"
#include "line_writer.h"
#include "progress.h"

namespace latigo::cli {

// The points that are doubtful for one reason.
struct Doubtful {
  std::size_t count = 0;
  std::size_t firstLine = 0;
};

// The output of a block of lines.
struct Output {
  Writer text;
  std::string messages;  // for standard error
  std::string file;
  std::size_t bytes = 0;  // of input
  std::size_t rows = 0;
  std::array<Doubtful, AllDoubts> doubtful{};
  bool otherHeights = false;  // with a decimal point or a sign, or 0: so the third field is not a name
};

// Prints blocks in order, and the summary of warnings.
class Report {
 public:
  // The converter has the texts of the doubts.
  Report(const std::vector<std::string>& files, const Converter& converter) : converter_(converter), progress_(files) {}

  void Print(const Output& output);

  // The exit status.
  int Finish();

 private:
  const Converter& converter_;
  Progress progress_;
  bool failed_ = false;
  bool otherHeights_ = false;
  std::array<std::size_t, AllDoubts> totals_{};
  std::array<std::string, AllDoubts> places_;  // the first point of each doubt
};

}  // namespace latigo::cli
