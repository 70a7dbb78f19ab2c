#include "report.h"

#include <cstdio>

#include "streams.h"
#include "visible.h"

namespace latigo::cli {

const std::array<const char*, Doubts> DoubtTexts = {
    "outside the datum grid or in rows that cannot be read, so converted without a shift",
    "too far from the projection's origin: the round-trip error exceeds one metre",
    "a whole number in the third field is read as a height; --no-height copies it",
    "near a pole or a limit of the projection: the error of the factors exceeds 1e-9",
    "too long for the mid-latitude formulas: the error of the distance can exceed 2 cm",
    "almost along a parallel: rounding errors of the distance can exceed 2 cm",
};

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
