// The progress of long work, as one line on a terminal.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace latigo::cli {

// " 43 % of 812 MB, 1204000 rows a second, 0:34 left"; without a total, as of a pipe, "812 MB, 1204000 rows a second".
// With less room than that, without the speed, then without all but the share of the work, then cut.
std::string ProgressText(std::uint64_t bytes, std::optional<std::uint64_t> total, std::uint64_t rows, double seconds,
                         std::size_t room = SIZE_MAX);

// Shows nothing unless standard error is a terminal, and neither input nor output is one, and a second has passed.
class Progress {
 public:
  explicit Progress(const std::vector<std::string>& files);
  ~Progress() { Erase(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Adds what is done, and shows it a few times a second.
  void Add(std::size_t bytes, std::size_t rows);
  // Erases the line, before other text or at the end.
  void Erase();

 private:
  using Clock = std::chrono::steady_clock;

  bool terminal_;
  std::optional<std::uint64_t> total_;  // bytes of all files, if every one is a regular file
  std::uint64_t bytes_ = 0;
  std::uint64_t rows_ = 0;
  std::size_t shown_ = 0;  // characters on the terminal
  Clock::time_point start_;
  Clock::time_point next_;
};

}  // namespace latigo::cli
