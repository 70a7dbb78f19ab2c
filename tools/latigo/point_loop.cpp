#include "point_loop.h"

#include <cmath>
#include <future>
#include <memory>
#include <vector>

#include "error_text.h"
#include "lines.h"

namespace latigo::cli {

namespace {

// Beyond it a result is no latitude, and not one that rounding has lifted over the pole; degrees.
constexpr double LargestLatitude = 90 + 1e-9;

constexpr int LengthPrecision = 4;   // 0.1 mm
constexpr int DegreePrecision = 10;  // 0.01 mm on the earth
constexpr int SecondPrecision = 6;   // 0.03 mm
constexpr int ScalePrecision = 10;

// What a block of lines becomes.
struct Output {
  Writer text;
  std::string messages;  // for standard error
};

// The lines of one block, converted by one object.
class BlockRun {
 public:
  BlockRun(const Converter& converter, const PointCommand& command, const std::string& file, Output& output)
      : options_(converter.CommandOptions()), converter_(converter), command_(command), file_(file), output_(output) {}

  void Run(const Block& block) {
    std::string_view text = block.bytes;
    line_ = block.firstLine;
    if (block.cut) {
      PointLine none;
      Fail(none, "the line is too long");
      return;
    }
    for (std::string_view line; NextLine(text, line); ++line_) {
      RunLine(line);
    }
  }

 private:
  void RunLine(std::string_view line) {
    if (IsComment(line)) {
      output_.text.Text(line);
      output_.text.Char('\n');
      return;
    }
    PointLine point = command_.parse(line, command_.order);
    if (point.fault == nullptr && command_.third == Third::Needed && !point.third) {
      point.fault = "a field too few";
    }
    if (point.fault != nullptr) {
      Fail(point, point.fault);
      return;
    }
    Result result;
    command_.convert(converter_, point, result);
    if (result.function != nullptr) {
      Fail(point, ErrorText(result.code, result.function));
      return;
    }
    for (int i = 0; i < result.count; ++i) {
      if (!std::isfinite(result.values[i].value)) {
        Fail(point, "the result is not a finite number");
        return;
      }
      if (result.values[i].quantity == Quantity::Latitude && std::fabs(result.values[i].value) > LargestLatitude) {
        Fail(point, "the result lies beyond the pole");
        return;
      }
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
    }
  }

  void Fail(const PointLine& point, const std::string& reason) {
    output_.messages += "latigo: " + file_ + ":" + std::to_string(line_) + ": " + reason + "\n";
    const int values = command_.values + (command_.third == Third::Height && point.third ? 1 : 0);
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

  const Options& options_;
  const Converter& converter_;
  const PointCommand& command_;
  const std::string& file_;
  Output& output_;
  std::size_t line_ = 0;
};

}  // namespace

int RunPoints(const Options& options, const PointCommand& command) {
  CheckSection(options);
  std::vector<std::unique_ptr<const Converter>> converters(static_cast<std::size_t>(options.jobs));  // one a thread
  for (auto& converter : converters) {
    converter = std::make_unique<const Converter>(options);
  }
  bool failed = false;
  const auto print = [&](const Output& output) {
    Print(output.text.Written());
    std::fputs(output.messages.c_str(), stderr);
    failed = failed || !output.messages.empty();
  };

  // Each thread takes every so manieth block, so the oldest one under way is always the next to be printed.
  std::vector<std::future<Output>> underWay(converters.size());
  std::size_t turn = 0;
  const std::vector<std::string> standardInput = {"-"};
  for (const std::string& path : options.points.empty() ? standardInput : options.points) {
    BlockReader reader(path);
    for (Block block; reader.Next(block);) {
      const auto convert = [&command, &converter = *converters[turn], file = reader.Name(), block = std::move(block)] {
        Output output;
        BlockRun(converter, command, file, output).Run(block);
        return output;
      };
      if (converters.size() == 1) {
        print(convert());
        continue;
      }
      if (underWay[turn].valid()) {
        print(underWay[turn].get());
      }
      underWay[turn] = std::async(std::launch::async, convert);
      turn = (turn + 1) % converters.size();
    }
  }
  for (std::size_t i = 0; i < underWay.size(); ++i, turn = (turn + 1) % underWay.size()) {
    if (underWay[turn].valid()) {
      print(underWay[turn].get());
    }
  }
  return failed ? 1 : 0;
}

}  // namespace latigo::cli
