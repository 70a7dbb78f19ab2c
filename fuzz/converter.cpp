// The program's commands for lines of points, on a section with a datum grid and a geoid grid from the fuzzer's bytes.
#include <fcntl.h>
#include <latigo/latigo.h>
#include <sys/stat.h>

#include <array>

#include "commands.h"
#include "error_text.h"
#include "fuzz_input.h"
#include "line_reader.h"
#include "point_line.h"
#include "projection/kinds.h"

namespace {

using namespace fuzz;
using namespace latigo::cli;

// The standard library's thread code is not compiled with the memory sanitizer, which would report its writes.
constexpr bool Threads = !__has_feature(memory_sanitizer);

// A grid file: complete with the fuzzer's bytes as values, truncated, or the fuzzer's bytes only.
std::string GridBytes(Input& in, std::int32_t depth) {
  const std::size_t kind = in.Below(8);
  const std::string piece = in.Text(in.Take<std::uint16_t>() % 512);
  if (kind == 0) { return piece; }
  std::string bytes = SmallGrid(depth);
  if (kind == 1) { return bytes.substr(0, bytes.size() - 1 - piece.size() % bytes.size()); }
  const std::size_t values = bytes.size() / 4;
  for (std::size_t i = 0; i < std::min(piece.size(), values); ++i) { bytes[values + i] = piece[i]; }
  return bytes;
}

// Standard output of the commands goes to a file, which is then read.
struct Outcome {
  int status = 2;
  std::string text;
};
int OutputFile() {
  static const int file = [] {
    const int opened = open((Scratch() + "/output").c_str(), O_RDWR | O_CREAT | O_TRUNC, 0600);
    REQUIRE(opened >= 0 && dup2(opened, STDOUT_FILENO) >= 0);
    return opened;
  }();
  return file;
}
template <typename OptionsOfIt>
Outcome Run(int (*command)(const OptionsOfIt&), const OptionsOfIt& options) {
  const int file = OutputFile();
  REQUIRE(ftruncate(file, 0) == 0 && lseek(file, 0, SEEK_SET) == 0);
  Outcome outcome;
  try {
    outcome.status = command(options);
    REQUIRE(outcome.status == 0 || outcome.status == 1);
  } catch (const UsageError&) {}
  REQUIRE(std::fflush(stdout) == 0);
  struct stat state {};
  REQUIRE(fstat(file, &state) == 0);
  outcome.text.resize(static_cast<std::size_t>(state.st_size));
  REQUIRE(pread(file, outcome.text.data(), outcome.text.size(), 0) == state.st_size);
  return outcome;
}

// What the commands have in common, and `other`: the option that ecef, distance and scale have each of their own.
struct Asked : ShiftOptions {
  bool other = false;
};

template <auto run, typename OptionsOfIt>
Outcome RunAsked(const Asked& asked) {
  OptionsOfIt options;
  static_cast<PointOptions&>(options) = asked;
  if constexpr (requires { options.wgs84; }) { options.wgs84 = asked.wgs84; }
  if constexpr (requires { options.grid; }) { options.grid = asked.other; }
  if constexpr (requires { options.inverse; }) { options.inverse = asked.other; }
  if constexpr (requires { options.rhumb; }) { options.rhumb = asked.other; }
  return Run<OptionsOfIt>(run, options);
}

struct {
  Outcome (*run)(const Asked&);
  std::size_t values;  // in a line of output, without a height
} constexpr Commands[] = {{RunAsked<RunForward, GridOptions>, 2}, {RunAsked<RunInverse, GridOptions>, 2},
                          {RunAsked<RunScale, ScaleOptions>, 1},  {RunAsked<RunUndulation, UndulationOptions>, 1},
                          {RunAsked<RunEcef, EcefOptions>, 3},    {RunAsked<RunDistance, DistanceOptions>, 1}};

// The first values of a line, after blanks, are all finite numbers, or all *.
bool CheckValues(std::string_view line, std::size_t count) {
  line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  std::size_t stars = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string word(line.substr(0, line.find_first_of(" ,\t;")));
    stars += word == "*" ? 1 : 0;
    char* end = nullptr;
    REQUIRE(word == "*" || (std::isfinite(std::strtod(word.c_str(), &end)) && !word.empty() && *end == '\0'));
    line.remove_prefix(std::min(line.size(), word.size() + 1));
  }
  REQUIRE(stars == 0 || stars == count);
  return stars == 0;
}

// Easting and northing of a line equal those of the library's functions.
void CheckForward(GeodesyHandle object, const Asked& options, std::string_view line, std::string_view written) {
  const PointLine point = ParsePointLine(line, options.lonlat ? Order::LongitudeLatitude : Order::LatitudeLongitude);
  double latitude = point.first * RadiansPerDegree, longitude = point.second * RadiansPerDegree, wanted[2];
  double height = point.third.value_or(0);
  if (options.wgs84 && std::fabs(longitude) > Pi) { longitude = std::remainder(longitude, 2 * Pi); }
  REQUIRE(point.fault == nullptr && (!options.wgs84 || WGS84Conv(object, &latitude, &longitude, &height) == 1));
  if (std::fabs(longitude) > Pi) { longitude -= std::copysign(2 * Pi, longitude); }
  REQUIRE(GeoXY(object, &wanted[0], &wanted[1], latitude, longitude) == 1);
  const char* text = written.data();
  for (const double value : wanted) {
    char* end = nullptr;
    const double printed = std::strtod(text, &end);
    REQUIRE(std::fabs(printed - value) <= 0.5e-4 + 1e-15 * std::fabs(value));
    text = end + 1;
  }
}

// A file with columns, if it has a meaning: with results appended, each line begins as before, also inside a field with
// line breaks. Threads change nothing.
void CheckTable(Outcome (*run)(const Asked&), Asked options, std::string_view from) {
  const Outcome outcome = run(options);
  std::string_view to = outcome.text;
  const bool appended = outcome.status != 2 && options.table.append;
  for (std::string_view line, written; appended && NextLine(from, line);) {
    REQUIRE(NextLine(to, written) && written.starts_with(line));
  }
  REQUIRE(!appended || to.empty());
  options.jobs = Threads ? 2 : 1;
  const Outcome threads = run(options);
  REQUIRE(threads.status == outcome.status && (outcome.status == 2 || threads.text == outcome.text));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in{data, size};
  const auto& command = Commands[in.Below(std::size(Commands))];
  const auto flags = in.Take<std::uint8_t>();
  const auto flag = [flags](unsigned bit) { return (flags >> bit & 1U) != 0; };
  std::string text = "[Geodesy]\nSemiMajorAxis=6377397.155\nFlattening=299.1528128\nScaleFactor=0.9996\nProjection=";
  text += latigo::Kinds[in.Below(std::size(latigo::Kinds))].code;
  text += "\nNorthParallel=1\nSouthParallel=-1\nRefLatitude=0.5\nSkewAzimuth=45\n";
  WriteFile("datum/d", GridBytes(in, 2 + static_cast<std::int32_t>(in.Below(2))));
  WriteFile("datum/g", GridBytes(in, 1));
  text += flag(0) ? "DynDatum=d\n" : "DeltaX=100\nDeltaY=-200\nDeltaZ=300\nDeltaRX=1\n";
  text += flag(1) ? "Geoid=g\n" : "";
  const std::string lines = "# points\n" + in.Text(in.size);  // so that the file is not UTF-16, which is refused

  Asked options;
  options.file = WriteFile("file.ini", text);
  options.section = "Geodesy";
  options.points = {WriteFile("points", lines)};
  options.wgs84 = flag(2), options.lonlat = flag(3), options.other = flag(4);
  if (flag(5)) {
    options.table.columns = flag(7) ? "2,1" : flag(4) ? "a,b" : "1,3";
    options.table.append = flag(6);
    options.table.decimalComma = flag(3);
    CheckTable(command.run, options, lines);
    return 0;
  }
  const Outcome outcome = command.run(options);
  GeodesyHandle object = CreateFileGeodesy(options.file.c_str(), "Geodesy");
  const bool opens = object != nullptr && GetGeodesyError() == 0;
  REQUIRE(opens == (outcome.status != 2) && (opens || outcome.text.empty()));

  // One line of output per line of input; the status is 1 if and only if a line failed.
  std::string_view from = lines, to = outcome.text;
  bool failed = false;
  for (std::string_view line, written; opens && NextLine(from, line);) {
    REQUIRE(NextLine(to, written));
    if (IsComment(line)) {
      REQUIRE(written == line);
      continue;
    }
    const bool good = CheckValues(written, command.values);
    failed = failed || !good;
    if (good && &command == Commands) { CheckForward(object, options, line, written); }
  }
  REQUIRE(to.empty() && (!opens || failed == (outcome.status == 1)));
  if (flag(7) && Threads) {
    options.jobs = 2;
    const Outcome threads = command.run(options);
    REQUIRE(threads.status == outcome.status && threads.text == outcome.text);
  }
  DestroyGeodesy(object);
  return 0;
}
