// The program for grid files: makes them from public grids, describes them, reads values and compares.
#include <latigo/latigo.h>

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "../latigo/angle.h"
#include "../latigo/visible.h"
#include "commands.h"
#include "lattice.h"

namespace {

using latigo::grids::Options;
using latigo::grids::Refused;

constexpr const char* Sources =
    "Sources: GTX, NTv2, a NADCON pair (.las, .los), geodetic TIFF, ISG, BYN, NGS geoids, EGM as PGM, Arc/Info ASCII, "
    "and text with a latitude, a longitude and one to three values in a line. Exit status: 0, or 2 with one line that "
    "says what is wrong; then nothing is written.";

double Angle(const std::string& text, latigo::cli::Axis axis) {
  const latigo::cli::Parsed parsed = latigo::cli::ParseAngle(text, axis);
  if (parsed.fault != nullptr) {
    throw Refused(text + ": " + parsed.fault);
  }
  return parsed.value;
}

latigo::grids::Area AreaOf(const std::vector<std::string>& texts) {
  using latigo::cli::Axis;
  latigo::grids::Area area{Angle(texts.at(0), Axis::Latitude), Angle(texts.at(1), Axis::Longitude),
                           Angle(texts.at(2), Axis::Latitude), Angle(texts.at(3), Axis::Longitude)};
  area.east += area.east <= area.west ? 360 : 0;
  if (!(area.south < area.north) || area.east - area.west > 360) {
    throw Refused("an area is S,W,N,E, with S less than N");
  }
  return area;
}

void AddSource(CLI::App& command, Options& options) {
  command.footer(Sources);
  command.add_option("--sub-grid", options.source.subGrid, "the only one to be used of the source's sub-grids");
  command.add_option_function<double>(
      "--nodata", [&options](double value) { options.source.noData = value; },
      "a value that marks nodes without one, beside the mark that the source names");
  command.add_option("--interpolation", options.source.interpolation, "between the source's nodes")
      ->option_text("bilinear|bicubic")
      ->transform(CLI::CheckedTransformer(std::map<std::string, latigo::grids::Interpolation>{
          {"bilinear", latigo::grids::Interpolation::Bilinear}, {"bicubic", latigo::grids::Interpolation::Bicubic}}));
  command.add_flag("--reverse", options.source.reverse, "the source leads from WGS-84 to the datum");
  command.add_flag("--lonlat", options.source.longitudeFirst, "in text the longitude stands first");
}

void AddPoints(CLI::App& command, Options& options) {
  command.add_option("--points", options.points, "random points that are compared")->check(CLI::Range(1, 10000000));
  command.add_option("--seed", options.seed, "of the random points");
}

int Run(int argc, char** argv) {
  Options options;
  std::vector<std::string> area;
  std::string latitude, longitude;
  CLI::App app("LATIGO: grid files from public grids", "latigo-grid");
  app.set_version_flag("--version", "latigo-grid " + std::to_string(GetGeodesyVersion() / 100) + "." +
                                        std::to_string(GetGeodesyVersion() % 100));
  app.require_subcommand(0, 1);

  CLI::App* make = app.add_subcommand("make", "Makes a grid file dense enough for a tolerance, and certifies it.");
  make->add_option("SOURCE", options.file, "public grid")->required();
  make->add_option("-o,--output", options.output,
                   "grid file; the certificate is written to the same name with .txt appended")
      ->required();
  make->add_option("--tolerance", options.tolerance, "largest difference from the source, as 1mm, 2.5cm, 0.1m")
      ->capture_default_str();
  make->add_option("--max-size", options.maxSize, "of the file in bytes, or as 100MB; at most 2 GiB")
      ->transform(CLI::AsSizeValue(false));
  make->add_option("--area", area, "in degrees, or degrees, minutes and seconds")
      ->option_text("S,W,N,E")
      ->delimiter(',')
      ->expected(4);
  make->add_flag("--cut", options.cut, "take the largest area in which every node has a value");
  make->add_option_function<std::string>(
          "--exact", [&options](const std::string& way) { options.source.fromWgs84 = way == "from"; },
          "of two values: which way of conversion, to WGS-84 (the default) or from it, has the source's answers; the "
          "library does not iterate the other one")
      ->option_text("to|from")
      ->check(CLI::IsMember({"to", "from"}));
  AddSource(*make, options);
  AddPoints(*make, options);

  CLI::App* info = app.add_subcommand("info", "Describes and checks a grid file or a public grid, with a picture.");
  info->add_option("FILE", options.file, "grid file or public grid")->required();
  info->add_option("--svg", options.svg, "write the picture to this file");
  AddSource(*info, options);

  CLI::App* at = app.add_subcommand(
      "at", "Values at a position: undulation in metres, shift in arc seconds, or translation in metres.");
  at->add_option("FILE", options.file, "grid file or public grid")->required();
  at->add_option("LAT", latitude, "latitude")->required();
  at->add_option("LON", longitude, "longitude")->required();
  AddSource(*at, options);

  CLI::App* compare = app.add_subcommand("compare", "The differences of two grids at random points.");
  compare->add_option("A", options.file, "grid file or public grid")->required();
  compare->add_option("B", options.other, "grid file or public grid")->required();
  AddSource(*compare, options);
  AddPoints(*compare, options);

  try {
    app.allow_extras();  // a word that is no command; after the commands, which would inherit it
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& wrong) {
    throw Refused(wrong.what());
  }
  if (app.get_subcommands().empty() || !app.remaining().empty()) {
    throw Refused(app.remaining().empty()
                      ? "a command is required; latigo-grid --help lists them"
                      : app.remaining().front() + ": no such command; latigo-grid --help lists them");
  }
  if (!area.empty()) {
    options.source.area = AreaOf(area);
  }
  if (make->parsed()) {
    if (options.maxSize > latigo::grids::MaxFileBytes) {
      options.maxSize = latigo::grids::MaxFileBytes;
    }
    RunMake(options);
  } else if (info->parsed()) {
    RunInfo(options);
  } else if (at->parsed()) {
    options.latitude = Angle(latitude, latigo::cli::Axis::Latitude);
    options.longitude = Angle(longitude, latigo::cli::Axis::Longitude);
    RunAt(options);
  } else {
    RunCompare(options);
  }
  return std::fflush(stdout) == 0 ? 0 : throw Refused("standard output cannot be written");
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "latigo-grid: %s\n", latigo::cli::Visible(failure.what()).c_str());
    return 2;
  }
}
