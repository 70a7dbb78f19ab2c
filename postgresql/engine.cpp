#include "engine.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <exception>
#include <iterator>
#include <new>
#include <optional>
#include <string>

#include "distances.h"
#include "error_text.h"
#include "handles.h"
#include "operations.h"
#include "section_files.h"

namespace latigo::postgresql {

namespace {

constexpr double LargestLatitude = 90;    // degrees, of an input
constexpr double LargestLongitude = 360;  // degrees, of an input

// Everything of a server process. It is made by the first use and deleted by EngineClose; the order in which statics are
// destroyed does not matter to it.
struct State {
  explicit State(const char* paths) : files(paths) {}
  SectionFiles files;
  Handles handles;
  std::vector<SectionFiles::Listed> listed;
  std::string warnings;
};

State* state = nullptr;
std::array<char, 4096> filesSetting;  // a text that needs no destructor
std::array<char, 1024> message;

void SetMessage(const char* text) noexcept {
  std::snprintf(message.data(), message.size(), "%s", text);
}

EngineOutcome Fail(EngineOutcome outcome, const char* text) noexcept {
  SetMessage(text);
  return outcome;
}

// Runs an operation that may throw.
template <typename Operation>
EngineOutcome Guarded(Operation operation) noexcept {
  try {
    return operation();
  } catch (const NoSection& failure) {
    return Fail(ENGINE_NO_SECTION, failure.what());
  } catch (const std::bad_alloc&) {
    return Fail(ENGINE_SYSTEM_FAILED, "out of memory");
  } catch (const std::exception& failure) {
    return Fail(ENGINE_SECTION_FAILED, failure.what());
  } catch (...) {
    return Fail(ENGINE_SECTION_FAILED, "unknown failure");
  }
}

State& TheState() {
  if (state == nullptr) {
    state = new State(filesSetting.data());
  }
  return *state;
}

// Adds a height after the datum shift, also of a point without one.
void AddHeight(const cli::Converter& converter, const cli::PointLine& point, double h, cli::Result& result) {
  result.Add(h, cli::Quantity::Length);
  if (point.third) {
    converter.UseShiftedHeight(result);
  }
}

void FromWgs84(const cli::Converter& converter, const cli::PointLine& point, cli::Result& result) {
  cli::Position to;
  if (converter.ReadGeographic(point, to, result)) {
    converter.WriteGeographic(to, result);
    AddHeight(converter, point, to.h, result);
  }
}

void ToWgs84(const cli::Converter& converter, const cli::PointLine& point, cli::Result& result) {
  cli::Position at = {point.first * cli::RadiansPerDegree, point.second * cli::RadiansPerDegree,
                      point.third.value_or(0)};
  if (converter.ToWgs84(at, result)) {
    converter.WriteGeographic(at, result);
    AddHeight(converter, point, at.h, result);
  }
}

// What an operation needs.
struct Needs {
  int inputs;      // without a height
  int positions;   // pairs of latitude and longitude among them
  bool shift;      // the datum shift
  bool localGrid;  // the local grid
};

constexpr Needs NeedsOf(EngineOperation operation) {
  switch (operation) {
    case ENGINE_INVERSE:
      return {2, 0, false, true};
    case ENGINE_FROM_WGS84:
    case ENGINE_TO_WGS84:
      return {2, 1, true, true};
    case ENGINE_SCALE:
      return {2, 1, false, false};  // the factor is that of the projection's coordinates
    case ENGINE_GREAT_CIRCLE:
    case ENGINE_RHUMB_LINE:
      return {4, 2, false, true};
    default:
      return {2, 1, false, true};
  }
}

// Called by name, not from a table, so that the compiler can put them in place.
void Run(EngineOperation operation, const cli::Converter& converter, const cli::PointLine& point, cli::Result& result) {
  switch (operation) {
    case ENGINE_FORWARD:
      return cli::Forward(converter, point, result);
    case ENGINE_INVERSE:
      return cli::Inverse(converter, point, result);
    case ENGINE_FROM_WGS84:
      return FromWgs84(converter, point, result);
    case ENGINE_TO_WGS84:
      return ToWgs84(converter, point, result);
    case ENGINE_SCALE:
      return cli::ScaleOfPosition(converter, point, result);
    case ENGINE_UNDULATION:
      return cli::GeoidUndulation(converter, point, result);
    case ENGINE_GREAT_CIRCLE:
      return cli::DistanceOfGreatCircle(converter, point, result);
    case ENGINE_RHUMB_LINE:
      return cli::DistanceOfRhumbLine(converter, point, result);
  }
}

const char* FaultOfInput(const Needs& needs, const EnginePoint& point) noexcept {
  for (int i = 0; i < needs.inputs + (point.height ? 1 : 0); ++i) {
    if (!std::isfinite(point.in[i])) {
      return "an argument is not a finite number";
    }
  }
  for (int i = 0; i < 2 * needs.positions; i += 2) {
    if (std::fabs(point.in[i]) > LargestLatitude) {
      return "a latitude above 90 degrees";
    }
    if (std::fabs(point.in[i + 1]) > LargestLongitude) {
      return "a longitude above 360 degrees";
    }
  }
  return nullptr;
}

// The point converted last. A query that selects two columns of one row calls twice: (latigo_forward(...)).x and .y.
struct Last {
  std::uint64_t serial = 0;  // of the handle; no two have the same
  EngineOperation operation = ENGINE_FORWARD;
  EnginePoint point = {};

  // The same bits, so that a zero with another sign is another point.
  bool IsOf(const EngineUse& use, EngineOperation ofOperation, const EnginePoint& of) const noexcept {
    return serial == use.serial && operation == ofOperation && point.height == of.height &&
           std::equal(std::begin(of.in), std::end(of.in), point.in, [](double one, double other) {
             return std::bit_cast<std::uint64_t>(one) == std::bit_cast<std::uint64_t>(other);
           });
  }
  void Set(const EngineUse& use, EngineOperation ofOperation, const EnginePoint& of) noexcept {
    serial = use.serial;
    operation = ofOperation;
    std::copy(std::begin(of.in), std::end(of.in), point.in);
    std::copy(std::begin(of.out), std::end(of.out), point.out);
    point.height = of.height;
    point.doubt = of.doubt;
  }
};
Last last;

// Kept between calls: most of a line is of no use here, and need not be cleared for each point.
const cli::PointLine& LineOf(const EnginePoint& point) {
  static cli::PointLine line;
  line.first = point.in[0];
  line.second = point.in[1];
  line.toFirst = point.in[2];
  line.toSecond = point.in[3];
  line.third = point.height ? std::optional(point.in[2]) : std::nullopt;
  return line;
}

}  // namespace

}  // namespace latigo::postgresql

using namespace latigo;
using namespace latigo::postgresql;

extern "C" {

const char* EngineCheckFiles(const char* paths) {
  if (std::char_traits<char>::length(paths) >= filesSetting.size()) {
    return "the list is longer than 4095 bytes";
  }
  const EngineOutcome outcome = Guarded([&] {
    const SectionFiles checked(paths);
    return ENGINE_DONE;
  });
  return outcome == ENGINE_DONE ? nullptr : message.data();
}

void EngineSetFiles(const char* paths) {
  EngineClose();
  std::snprintf(filesSetting.data(), filesSetting.size(), "%s", paths);
}

EngineOutcome EngineOpen(EngineUse* use, const char* section, EngineOperation operation, bool wgs84,
                         std::int64_t command) {
  return Guarded([&] {
    const Needs needs = NeedsOf(operation);
    State& all = TheState();
    use->place = all.handles.Open({section, wgs84 || needs.shift, needs.localGrid}, all.files, command);
    use->serial = all.handles.At(use->place).serial;
    return ENGINE_DONE;
  });
}

const char* EngineWarnings(const EngineUse* use, bool again) {
  Handle& handle = state->handles.At(use->place);
  const bool shown = handle.warned && !again;
  handle.warned = true;
  return shown || handle.warnings.empty() ? nullptr : handle.warnings.c_str();
}

bool EngineIsCurrent(const EngineUse* use, std::int64_t command) {
  if (use->serial == 0 || state == nullptr) {
    return false;
  }
  const Handle& handle = state->handles.At(use->place);
  return handle.serial == use->serial && handle.command == command;
}

EngineOutcome EngineConvert(const EngineUse* use, EngineOperation operation, EnginePoint* point) {
  if (last.IsOf(*use, operation, *point)) {
    *point = last.point;
    return ENGINE_DONE;
  }
  return Guarded([&] {
    if (const char* fault = FaultOfInput(NeedsOf(operation), *point); fault != nullptr) {
      return Fail(ENGINE_POINT_FAILED, fault);
    }
    cli::Result result;
    Run(operation, *state->handles.At(use->place).converter, LineOf(*point), result);
    if (result.function != nullptr) {
      return Fail(ENGINE_POINT_FAILED, cli::ErrorText(result.code, result.function).c_str());
    }
    if (const char* fault = result.fault != nullptr ? result.fault : cli::FaultOf(result); fault != nullptr) {
      return Fail(ENGINE_POINT_FAILED, fault);
    }
    for (int i = 0; i < result.count; ++i) {
      point->out[i] = result.values[i].value;
    }
    point->doubt =
        result.doubts != 0 ? cli::DoubtTexts[static_cast<std::size_t>(std::countr_zero(result.doubts))] : nullptr;
    last.Set(*use, operation, *point);
    return ENGINE_DONE;
  });
}

const char* EngineFile(const EngineUse* use) {
  return state->handles.At(use->place).file.c_str();
}

void EngineClose(void) {
  delete state;
  state = nullptr;
}

int EngineOpenFiles(void) {
  return state == nullptr ? 0 : state->handles.OpenFiles();
}

EngineOutcome EngineListSections(std::size_t* count) {
  return Guarded([&] {
    State& all = TheState();
    all.files.Refresh();
    all.listed = all.files.List();
    *count = all.listed.size();
    return ENGINE_DONE;
  });
}

EngineOutcome EngineSection(std::size_t index, EngineSectionText* text) {
  return Guarded([&] {
    State& all = TheState();
    const SectionFiles::Listed& listed = all.listed[index];
    all.warnings = all.files.Warnings(listed.name);
    *text = {listed.name.c_str(), all.files.Path(listed.file).c_str(),
             all.warnings.empty() ? nullptr : all.warnings.c_str()};
    return ENGINE_DONE;
  });
}

const char* EngineMessage(void) {
  return message.data();
}

}  // extern "C"
