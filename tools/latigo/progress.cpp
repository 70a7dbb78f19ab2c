#include "progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "streams.h"

namespace latigo::cli {

namespace {

constexpr std::chrono::seconds Delay(1);            // until the first line
constexpr std::chrono::milliseconds Interval(200);  // between two lines

std::string Size(double bytes) {
  constexpr const char* Units[] = {"B", "kB", "MB", "GB", "TB"};
  std::size_t unit = 0;
  for (; bytes >= 1000 && unit < 4; ++unit) {
    bytes /= 1000;
  }
  char text[32];
  std::snprintf(text, sizeof text, "%.3g %s", bytes, Units[unit]);
  return text;
}

bool IsTyped(const std::vector<std::string>& files) {
  return IsTerminal(stdin) && std::find(files.begin(), files.end(), "-") != files.end();
}

std::string Time(double seconds) {
  const auto whole = static_cast<unsigned long>(std::lround(seconds));
  char text[32];
  if (whole < 3600) {
    std::snprintf(text, sizeof text, "%lu:%02lu", whole / 60, whole % 60);
  } else {
    std::snprintf(text, sizeof text, "%lu:%02lu:%02lu", whole / 3600, whole / 60 % 60, whole % 60);
  }
  return text;
}

}  // namespace

std::string ProgressText(std::uint64_t bytes, std::optional<std::uint64_t> total, std::uint64_t rows, double seconds,
                         std::size_t room) {
  const auto done = static_cast<double>(bytes);
  const std::string speed =
      ", " + std::to_string(static_cast<std::uint64_t>(static_cast<double>(rows) / seconds)) + " rows a second";
  std::string share = Size(done);
  std::string left;
  if (total && bytes > 0 && bytes <= *total) {  // a file that grows has no end
    const auto all = static_cast<double>(*total);
    char percent[16];
    std::snprintf(percent, sizeof percent, "%3.0f %%", 100 * done / all);
    share = percent + (" of " + Size(all));
    left = ", " + Time(seconds * (all - done) / done) + " left";
  }
  std::string text = share;
  if (share.size() + speed.size() + left.size() <= room) {
    text += speed;
  }
  if (text.size() + left.size() <= room) {
    text += left;
  }
  return text.substr(0, room);
}

Progress::Progress(const std::vector<std::string>& files)
    : terminal_(IsTerminal(stderr) && !IsTerminal(stdout) && !(IsTyped(files))),
      start_(Clock::now()),
      next_(start_ + Delay) {
  if (terminal_) {
    total_ = SizeOfFiles(files);
  }
}

void Progress::Add(std::size_t bytes, std::size_t rows) {
  if (!terminal_) {
    return;
  }
  bytes_ += bytes;
  rows_ += rows;
  const Clock::time_point now = Clock::now();
  if (now < next_) {
    return;
  }
  next_ = now + Interval;
  // A row that is full to its end would wrap: the next one would leave it there.
  const std::size_t room = TerminalWidth(stderr).value_or(SIZE_MAX) - 1;
  std::string text = ProgressText(bytes_, total_, rows_, std::chrono::duration<double>(now - start_).count(), room);
  const std::size_t length = text.size();
  text.resize(std::max(length, std::min(shown_, room)), ' ');  // over what was longer
  shown_ = length;
  std::fprintf(stderr, "\r%s", text.c_str());
  std::fflush(stderr);
}

void Progress::Erase() {
  if (shown_ > 0) {
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(shown_), "");
    std::fflush(stderr);
    shown_ = 0;
  }
}

}  // namespace latigo::cli
