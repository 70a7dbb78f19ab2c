#include "report.h"

#include <bit>
#include <cstdio>

#include "streams.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr int WholeHeightIndex = std::countr_zero(static_cast<unsigned>(Doubt::WholeHeight));

}  // namespace

void Report::Print(const Output& output) {
  cli::Print(output.text.Written());
  if (!output.messages.empty()) {
    progress_.Erase();
    std::fputs(output.messages.c_str(), stderr);
  }
  failed_ = failed_ || !output.messages.empty();
  otherHeights_ = otherHeights_ || output.otherHeights;
  for (std::size_t i = 0; i < AllDoubts; ++i) {
    if (totals_[i] == 0 && output.doubtful[i].count > 0) {
      places_[i] = output.file + ":" + std::to_string(output.doubtful[i].firstLine);
      if (i != WholeHeightIndex) {
        progress_.Erase();
        Message(places_[i] + ": warning: " + converter_.TextOf(i));
      }
    }
    totals_[i] += output.doubtful[i].count;
  }
  progress_.Add(output.bytes, output.rows);
}

int Report::Finish() {
  progress_.Erase();
  if (totals_[WholeHeightIndex] > 0 && !otherHeights_) {
    Message(places_[WholeHeightIndex] + ": warning: " + converter_.TextOf(WholeHeightIndex));
  }
  for (std::size_t i = 0; i < AllDoubts; ++i) {
    if (totals_[i] > 0 && i != WholeHeightIndex) {
      Message(std::to_string(totals_[i]) + " points: " + converter_.TextOf(i));
    }
  }
  return failed_ ? 1 : 0;
}

}  // namespace latigo::cli
