// Describes grids of ours and public ones, reads values from them and compares them.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <limits>
#include <memory>

#include "amounts.h"
#include "certificate.h"
#include "commands.h"
#include "describe.h"
#include "grid_file.h"
#include "picture.h"
#include "source.h"

namespace latigo::grids {

namespace {

// A header of ours may be read as one of another format, and NADCON's as ours; the name decides there.
bool IsOurs(const std::string& path, GridHeader& header) {
  const std::string end = path.size() > 4 ? path.substr(path.size() - 4) : "";
  const bool nadcon = end.size() == 4 && (end[1] == 'l' || end[1] == 'L') && (end[3] == 's' || end[3] == 'S') &&
                      std::string("aAoO").find(end[2]) != std::string::npos;
  return !nadcon && ReadGridHeader(path, header) && header.fileBytes >= header.lattice.RecordBytes() * 2;
}

std::unique_ptr<Surface> Open(const std::string& path, const SourceOptions& options) {
  GridHeader header;
  if (IsOurs(path, header)) {
    return std::make_unique<LibraryGrid>(path, header.lattice, Ellipsoid{});
  }
  return std::make_unique<Field>(OpenSource(path, options));
}

struct Range {
  float low = std::numeric_limits<float>::infinity(), high = -low;
};

void DescribeFile(const std::string& path, const GridHeader& header) {
  const Lattice& lattice = header.lattice;
  std::printf("%s: grid file, %s per node: %s\n", path.c_str(),
              lattice.depth == 1 ? "1 value" : (std::to_string(lattice.depth) + " values").c_str(),
              Meaning(static_cast<Kind>(std::min(lattice.depth, 3))).c_str());
  std::printf("  description: %s\n  %s", header.description.c_str(), Describe(lattice).c_str());
  if (header.magic) {
    std::printf("  TIDEWRAK, values %.17g and %.17g\n", header.valueA, header.valueB);
  }
  for (const auto& [stored, seconds, name] : {std::tuple{header.latStep, lattice.latStep, "latitude"},
                                              std::tuple{header.lonStep, lattice.lonStep, "longitude"}}) {
    if (std::fabs(double{stored} * 3600 - seconds) > 0.001) {
      std::printf("  note: the step in %s is stored as %.9g degrees, and read as %d\"\n", name, double{stored},
                  seconds);
    }
  }
  if (lattice.West() < 0 && lattice.East() > 180) {
    std::printf("  note: begins west of 0 and ends beyond 180; western longitudes before its end are lost\n");
  }
  if (header.fileBytes > lattice.FileBytes()) {
    std::printf("  note: %lld bytes follow the last row\n",
                static_cast<long long>(header.fileBytes - lattice.FileBytes()));
  }
  std::vector<Range> ranges(static_cast<std::size_t>(lattice.depth));
  std::size_t bad = 0;
  ForEachRow(path, header, [&](std::int64_t, std::span<const float> values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
      Range& range = ranges[i % ranges.size()];
      bad += std::isfinite(values[i]) ? 0 : 1;
      range = {std::fmin(range.low, values[i]), std::fmax(range.high, values[i])};
    }
  });
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    std::printf("  value %zu: %.7g to %.7g\n", i + 1, double{ranges[i].low}, double{ranges[i].high});
  }
  if (bad > 0) {
    throw Refused(path + ": " + std::to_string(bad) + " values are not finite");
  }
}

}  // namespace

void RunInfo(const Options& options) {
  GridHeader header;
  std::unique_ptr<Surface> surface;
  if (IsOurs(options.file, header)) {
    DescribeFile(options.file, header);
    surface = Open(options.file, options.source);
  } else {
    auto field = std::make_unique<Field>(OpenSource(options.file, options.source));
    std::printf("%s: %s", options.file.c_str(), Describe(*field).c_str());
    surface = std::move(field);
  }
  if (options.svg.empty()) {
    std::printf("%s", TerminalPicture(*surface).c_str());
  } else if (!(std::ofstream(options.svg) << SvgPicture(*surface, options.file)).flush()) {
    throw Refused(options.svg + ": cannot be written");
  }
}

void RunAt(const Options& options) {
  const std::unique_ptr<Surface> surface = Open(options.file, options.source);
  Values values{};
  if (!surface->At(options.latitude, options.longitude, values)) {
    throw Refused(options.file + ": no value at " + Degrees(options.latitude) + " " + Degrees(options.longitude));
  }
  const int digits = surface->TheKind() == Kind::Shift ? 6 : 4;
  for (int i = 0; i < Depth(surface->TheKind()); ++i) {
    std::printf("%s%.*f", i == 0 ? "" : " ", digits, values.at(static_cast<std::size_t>(i)));
  }
  std::printf("\n");
}

void RunCompare(const Options& options) {
  const std::unique_ptr<Surface> one = Open(options.file, options.source), other = Open(options.other, options.source);
  if (one->TheKind() != other->TheKind()) {
    throw Refused(options.file + " has the " + Meaning(one->TheKind()) + ", and " + options.other + " the " +
                  Meaning(other->TheKind()));
  }
  Statistics found = Measure(*one, *other, RandomPoints(one->Limits(), options.points, options.seed));
  if (found.points == 0) {
    throw Refused(options.file + " and " + options.other + ": no random point lies in both");
  }
  std::printf("%s\n", found.Text().c_str());
  if (found.onlyOne > 0) {
    std::printf("%zu other points have a value in one of the two only\n", found.onlyOne);
  }
}

}  // namespace latigo::grids
