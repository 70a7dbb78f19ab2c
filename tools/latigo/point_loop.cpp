#include "point_loop.h"

#include <array>
#include <condition_variable>
#include <deque>
#include <exception>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "error_text.h"
#include "line_reader.h"
#include "line_writer.h"
#include "operations.h"
#include "progress.h"
#include "streams.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr int LengthPrecision = 4;   // 0.1 mm
constexpr int DegreePrecision = 10;  // 0.01 mm on the earth
constexpr int SecondPrecision = 6;   // 0.03 mm
constexpr int ScalePrecision = 10;
constexpr int AnglePrecision = 8;      // of convergence and distortion, degrees
constexpr int ArcSecondPrecision = 4;  // a centimetre at 200 km

constexpr const char* DoubtTexts[Doubts] = {
    "outside the datum grid or in rows that cannot be read, so converted without a shift",
    "too far from the projection's origin: the round-trip error exceeds one metre",
    "a whole number in the third field is read as a height; --no-height copies it",
    "near a pole or a limit of the projection: the error of the factors exceeds 1e-9",
    "too long for the mid-latitude formulas: the error of the distance can exceed 2 cm",
    "almost along a parallel: rounding errors of the distance can exceed 2 cm",
};
constexpr int WholeHeightIndex = 2;

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
  std::array<Doubtful, Doubts> doubtful{};
  bool otherHeights = false;  // with a decimal point or a sign, or 0: so the third field is not a name
};

// The lines of one block, converted by one object.
class BlockRun {
 public:
  BlockRun(const PointOptions& options, const PointCommand& command, const Converter& converter,
           const std::string& file, Output& output)
      : options_(options), command_(command), converter_(converter), file_(file), output_(output) {}

  void Run(const Block& block) {
    std::string_view text = block.bytes;
    line_ = block.firstLine;
    if (block.cut) {
      PointLine none;
      Fail(none, "the line is too long");
      output_.rows = 1;
      return;
    }
    for (std::string_view line; NextLine(text, line); ++line_) {
      RunLine(line);
    }
    output_.rows = line_ - block.firstLine;
  }

 private:
  void RunLine(std::string_view line) {
    if (IsComment(line)) {
      output_.text.Text(line);
      output_.text.Char('\n');
      return;
    }
    PointLine point = command_.parse(line, command_.order, options_.table.separation);
    if (command_.third == Third::Ignored) {
      point.third.reset();
      point.rest = point.restWithThird;
      point.fault = point.badThird ? nullptr : point.fault;
    }
    if (point.fault == nullptr && command_.third == Third::Needed && !point.third) {
      point.fault = "a field is missing";
    }
    if (point.fault != nullptr) {
      Fail(point, point.fault);
      return;
    }
    if (command_.third == Third::Undecided && point.third) {
      throw UsageError(file_ + ":" + std::to_string(line_) + ": the third field may be a height; choose --heights " +
                       "geoid or ellipsoidal, or --no-height, which copies it");
    }
    Result result;
    command_.convert(converter_, point, result);
    if (result.function != nullptr || result.fault != nullptr) {
      const std::string place = result.place.empty() ? "" : Visible(result.place) + ": ";
      Fail(point, place + (result.function != nullptr ? ErrorText(result.code, result.function) : result.fault));
      return;
    }
    if (point.third && command_.third == Third::Height) {
      if (point.wholeThird && *point.third != 0) {
        result.Add(Doubt::WholeHeight);
      } else {
        output_.otherHeights = true;
      }
    }
    if (const char* fault = FaultOf(result); fault != nullptr) {
      Fail(point, fault);
      return;
    }
    if (result.doubts != 0 && !Accept(point, result.doubts)) {
      return;
    }
    for (int i = 0; i < result.count; ++i) {
      Separate(point, i);
      Write(result.values[i]);
      if (i == 0 && !command_.unit.empty()) {
        output_.text.Char(point.separator);
        output_.text.Text(command_.unit);
      }
    }
    End(point);
  }

  // Records the doubts of a point; returns false if it fails because of them.
  bool Accept(const PointLine& point, unsigned doubts) {
    for (std::size_t i = 0; i < Doubts; ++i) {
      if ((doubts >> i & 1U) == 0) {
        continue;
      }
      if (options_.strict) {
        Fail(point, DoubtTexts[i]);
        return false;
      }
      Doubtful& doubtful = output_.doubtful[i];
      doubtful.firstLine = doubtful.count++ == 0 ? line_ : doubtful.firstLine;
    }
    return true;
  }

  void Write(const Value& value) {
    const auto precision = [this](int own) { return options_.precision >= 0 ? options_.precision : own; };
    const auto angle = [&](Axis axis) {
      if (options_.dms) {
        output_.text.Dms(value.value, axis, precision(SecondPrecision));
      } else {
        output_.text.Number(value.value, precision(DegreePrecision));
      }
    };
    switch (value.quantity) {
      case Quantity::Length:
        return output_.text.Number(value.value, precision(LengthPrecision));
      case Quantity::Factor:
        return output_.text.Number(value.value, precision(ScalePrecision));
      case Quantity::Latitude:
        return angle(Axis::Latitude);
      case Quantity::Longitude:
        return angle(Axis::Longitude);
      case Quantity::Azimuth:
        return angle(Axis::Azimuth);
      case Quantity::Angle:
        return output_.text.Number(value.value, precision(AnglePrecision));
      case Quantity::ArcSeconds:
        return output_.text.Number(value.value, precision(ArcSecondPrecision));
    }
  }

  void Fail(const PointLine& point, const std::string& reason) {
    output_.messages += "latigo: " + Visible(file_) + ":" + std::to_string(line_) + ": " + reason + "\n";
    const int values = command_.values + (command_.third == Third::Height && point.third ? command_.heightValues : 0);
    for (int i = 0; i < values; ++i) {
      Separate(point, i);
      output_.text.Char('*');
    }
    End(point);
  }

  void Separate(const PointLine& point, int index) {
    if (index > 0) {
      output_.text.Char(point.separator);
    }
  }

  void End(const PointLine& point) {
    output_.text.Text(command_.third == Third::Carried ? point.restWithThird : point.rest);
    output_.text.Char('\n');
  }

  const PointOptions& options_;
  const PointCommand& command_;
  const Converter& converter_;
  const std::string& file_;
  Output& output_;
  std::size_t line_ = 0;
};

// Prints blocks in order, and the summary of warnings.
class Report {
 public:
  explicit Report(const std::vector<std::string>& files) : progress_(files) {}

  void Print(const Output& output) {
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

  // The exit status.
  int Finish() {
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

 private:
  Progress progress_;
  bool failed_ = false;
  bool otherHeights_ = false;
  std::array<std::size_t, Doubts> totals_{};
  std::array<std::string, Doubts> places_;  // the first point of each doubt
};

// A queue of blocks in work. Its thread prints each as soon as it is the oldest and finished, while the caller waits
// for input.
class PrintQueue {
 public:
  PrintQueue(Report& report, std::size_t size) : report_(report), size_(size), thread_([this] { Run(); }) {}
  ~PrintQueue() {
    {
      const std::lock_guard lock(mutex_);
      ended_ = true;
    }
    changed_.notify_all();
    thread_.join();
  }
  PrintQueue(const PrintQueue&) = delete;
  PrintQueue& operator=(const PrintQueue&) = delete;

  // Waits until the queue has room, or is empty. Rethrows an exception from printing.
  void WaitForRoom() { WaitForFewerThan(size_); }
  void WaitForAll() { WaitForFewerThan(1); }
  void Add(std::future<Output> output) {
    {
      const std::lock_guard lock(mutex_);
      underWay_.push_back(std::move(output));
    }
    changed_.notify_all();
  }

 private:
  void WaitForFewerThan(std::size_t size) {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [&] { return underWay_.size() < size || failure_; });
    if (failure_) {
      std::rethrow_exception(failure_);
    }
  }

  void Run() {
    std::unique_lock lock(mutex_);
    for (;;) {
      changed_.wait(lock, [this] { return !underWay_.empty() || ended_; });
      if (underWay_.empty() || failure_) {
        return;
      }
      std::future<Output>& oldest = underWay_.front();  // its address is stable while others are added
      lock.unlock();
      std::exception_ptr failure;
      try {
        report_.Print(oldest.get());
      } catch (...) {
        failure = std::current_exception();
      }
      lock.lock();
      failure_ = failure;
      underWay_.pop_front();
      changed_.notify_all();
    }
  }

  Report& report_;
  std::size_t size_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<std::future<Output>> underWay_;
  bool ended_ = false;
  std::exception_ptr failure_;
  std::thread thread_;
};

}  // namespace

int RunPoints(const PointOptions& options, const PointCommand& command) {
  CheckSection(options);
  if (options.table.Asked()) {
    throw UsageError("columns are not read yet");
  }
  std::vector<std::unique_ptr<const Converter>> converters(static_cast<std::size_t>(options.jobs));  // one per thread
  for (auto& converter : converters) {
    auto made = std::make_unique<Converter>(options, command.between);
    if (command.makeTarget) {
      made->SetTarget(command.makeTarget());
    }
    converter = std::move(made);
  }
  const std::vector<std::string> standardInput = {"-"};
  const std::vector<std::string>& files = options.points.empty() ? standardInput : options.points;
  Report report(files);
  std::unique_ptr<PrintQueue> queue;
  if (converters.size() > 1) {
    queue = std::make_unique<PrintQueue>(report, converters.size());
  }
  std::size_t turn = 0;
  const auto read = [&](const std::string& path) {
    BlockReader reader(path);
    for (Block block; reader.Next(block);) {
      // The oldest block in work is finished before its converter is used again.
      const auto convert = [&options, &command, &converter = *converters[turn], file = reader.Name(),
                            block = std::move(block)] {
        Output output;
        output.file = file;
        output.bytes = block.bytes.size();
        BlockRun(options, command, converter, file, output).Run(block);
        return output;
      };
      if (!queue) {
        report.Print(convert());
        continue;
      }
      queue->WaitForRoom();
      queue->Add(std::async(std::launch::async, convert));
      turn = (turn + 1) % converters.size();
    }
  };
  for (const std::string& path : files) {
    read(path);  // if a file cannot be read, the queue still prints the output of the previous files
  }
  if (queue) {
    queue->WaitForAll();
  }
  return report.Finish();
}

}  // namespace latigo::cli
