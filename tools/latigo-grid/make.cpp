// Makes a grid file from a public grid, and certifies it.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "amounts.h"
#include "certificate.h"
#include "commands.h"
#include "describe.h"
#include "grid_file.h"
#include "grid_writer.h"
#include "plan.h"
#include "source.h"

namespace latigo::grids {

namespace {

void WriteRows(const Field& field, const Lattice& lattice, GridWriter& writer) {
  const auto depth = static_cast<std::size_t>(lattice.depth);
  std::vector<float> row(static_cast<std::size_t>(lattice.cols) * depth);
  for (std::int64_t r = 0; r < lattice.rows; ++r) {
    for (std::int64_t c = 0; c < lattice.cols; ++c) {
      Values values{};
      const double latitude = lattice.LatitudeOf(r), longitude = lattice.LongitudeOf(c);
      if (!field.At(latitude, longitude, values)) {
        const Area part = LargestWithoutGaps(field, lattice.Limits());
        throw Refused("no value at " + Degrees(latitude) + " " + Degrees(longitude) + "; --cut, or --area " +
                      Degrees(part.south) + "," + Degrees(part.west) + "," + Degrees(part.north) + "," +
                      Degrees(part.east) + ", takes a part without gaps");
      }
      for (std::size_t i = 0; i < depth; ++i) {
        row[static_cast<std::size_t>(c) * depth + i] = static_cast<float>(values.at(i));
      }
    }
    writer.AddRow(row);
  }
}

// Two values are exact on the way to WGS-84, or from it if that was asked for; three are on the way from it.
bool ToWgs84IsOther(const Field& field) {
  return field.kind == Kind::Translation || field.atWgs84;
}

struct Certificate {
  Statistics random, steep, borders, other;

  double Maximum() const { return std::max({random.maximum, steep.maximum, borders.maximum}); }

  std::string Text(const Plan& plan, const Field& field, const Options& options) const {
    std::string text = "difference from the source at random points (seed " + std::to_string(options.seed) + "), " +
                       random.Text() + "\n";
    text += "at the steepest cells, " + steep.Text() + "\n";
    if (borders.points > 0) {
      text += "at the borders of sub-grids, " + borders.Text() + "\n";
    }
    text += std::string(plan.aligned && borders.points == 0 ? "nowhere more than " : "expected nowhere more than ") +
            LengthUp(std::max(plan.bound, borders.maximum)) + "\n";
    if (field.kind != Kind::Geoid) {
      text += std::string(ToWgs84IsOther(field) ? "to" : "from") + " WGS-84, where the library does not iterate, " +
              other.Text() + "\n";
    }
    return text;
  }
};

Certificate Certify(const Field& field, const Lattice& lattice, const std::string& file, const Options& options) {
  const LibraryGrid library(file, lattice, field.ellipsoid);
  const std::vector<Point> random = RandomPoints(library.Limits(), options.points, options.seed);
  const std::size_t steep = std::max<std::size_t>(options.points / 20, 40);
  Certificate certificate{Measure(library, field, random),
                          Measure(library, field, SteepPoints(field, lattice, steep, options.seed)),
                          Measure(library, field, BorderPoints(field, lattice, steep)),
                          {}};
  if (field.kind != Kind::Geoid) {
    certificate.other = MeasureOther(library, field, ToWgs84IsOther(field), random);
  }
  if (certificate.random.onlyOne + certificate.steep.onlyOne > 0) {
    throw Refused("has gaps that no node of the lattice falls in; take a part of it by --area");
  }
  return certificate;
}

std::string BaseName(const std::string& path) {
  return std::filesystem::path(path).filename().string();
}

// The keys of a section that uses the file.
std::string Keys(const Field& field, const std::string& output) {
  std::string keys = (field.kind == Kind::Geoid ? "Geoid=" : "DynDatum=") + BaseName(output);
  if (field.kind != Kind::Geoid && field.knowsEllipsoid) {
    char text[100];
    std::snprintf(text, sizeof text, ", SemiMajorAxis=%.12g, Flattening=%.12g", field.ellipsoid.a,
                  field.ellipsoid.invFlattening);
    keys += text;
  }
  return keys;
}

}  // namespace

void RunMake(const Options& options) {
  const double tolerance = ParseLength(options.tolerance);
  std::error_code ignored;
  if (std::filesystem::equivalent(options.file, options.output, ignored)) {
    throw Refused(options.output + ": is the source");
  }
  const Field field = OpenSource(options.file, options.source);
  try {
    const std::string source = Describe(field);
    std::printf("%s: %s", options.file.c_str(), source.c_str());
    std::optional<Area> area = options.source.area;
    if (options.cut) {
      const Area all = field.Limits();
      area = LargestWithoutGaps(field, area ? ChoosePlan(field, area, 1e9, MaxFileBytes).lattice.Limits() : all);
    }
    const Plan plan = ChoosePlan(field, area, tolerance, static_cast<std::int64_t>(options.maxSize));
    const std::string lattice = Describe(plan.lattice);
    std::printf("%s: %s", options.output.c_str(), lattice.c_str());
    if (const Area has = plan.lattice.Limits();
        area && (has.south > area->south + FloatRounding || has.north < area->north - FloatRounding ||
                 has.east - has.west < area->east - area->west - FloatRounding)) {
      std::printf("  note: the source ends before the area does\n");
    }
    std::fflush(stdout);

    GridWriter writer(options.output, plan.lattice);
    WriteRows(field, plan.lattice, writer);
    const Certificate certificate = Certify(field, plan.lattice, writer.Complete(), options);
    if (certificate.Maximum() > tolerance) {
      throw Refused("the largest difference would be " + Length(certificate.Maximum()) + ": --tolerance " +
                    LengthUp(certificate.Maximum()) + " is possible");
    }
    const std::string text = certificate.Text(plan, field, options),
                      keys = "keys: " + Keys(field, options.output) + "\n";
    const std::string brief = BaseName(options.file).substr(0, 24) + " max " + Length(certificate.Maximum()) + " rms " +
                              Length(certificate.random.rms);
    std::ofstream beside(options.output + ".txt");
    beside << options.output << " from " << options.file << "\n" << source << lattice << text << keys;
    if (!beside.flush()) {
      throw Refused(options.output + ".txt cannot be written");
    }
    writer.Finish(brief);
    std::printf("%s%s", text.c_str(), keys.c_str());
  } catch (const Refused& why) {
    throw Refused(options.file + ": " + why.what());
  }
}

}  // namespace latigo::grids
