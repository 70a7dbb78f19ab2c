#include "report.h"

#include <cstdio>

#include "streams.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr int WholeHeightIndex = 2;

}  // namespace

void Report::Print(const Output& output) {
  cli::Print(output.text.Written());
  if (!output.messages.empty()) {
    progress_.Erase();
    std::fputs(output.messages.c_str(), stderr);
  }
  failed_ = failed_ || !output.messages.empty();
  otherHeights_ = otherHeights_ || output.otherHeights;
  for (std::size_t i = 0; i < Doubts; ++i) {
    if (totals_[i] == 0 && output.doubtful[i].count > 0) {
      places_[i] = output.file + ":" + std::to_string(output.doubtful[i].firstLine);
      if (i != WholeHeightIndex) {
        progress_.Erase();
        Message(places_[i] + ": warning: " + DoubtTexts[i]);
      }
    }
    totals_[i] += output.doubtful[i].count;
  }
  progress_.Add(output.bytes, output.rows);
}

int Report::Finish() {
  progress_.Erase();
  if (totals_[WholeHeightIndex] > 0 && !otherHeights_) {
    Message(places_[WholeHeightIndex] + ": warning: " + DoubtTexts[WholeHeightIndex]);
  }
  for (std::size_t i = 0; i < Doubts; ++i) {
    if (totals_[i] > 0 && i != WholeHeightIndex) {
      Message(std::to_string(totals_[i]) + " points: " + DoubtTexts[i]);
    }
  }
  return failed_ ? 1 : 0;
}

}  // namespace latigo::cli
