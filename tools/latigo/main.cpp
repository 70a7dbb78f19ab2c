// The command-line program: describes coordinate systems and converts points.
#include <latigo/latigo.h>

#include <CLI/CLI.hpp>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "commands.h"
#include "error_text.h"
#include "streams.h"
#include "visible.h"

namespace {

using latigo::cli::Options;
using latigo::cli::Separation;

constexpr const char* PointsHelp =
    "Points are read from files or standard input, one a line: two coordinates, perhaps a height, and anything else, "
    "which is carried through. Angles are decimal degrees or degrees, minutes and seconds (52.5, 52:30:00N, "
    "52\u00B030'00\"N). Heights are metres; on the grid's side they are vertical units if the section has the key "
    "VertUnit. Blank lines and lines that begin with # pass through.\n"
    "Invalid lines and failed points print * for each value, and a message. Exit status: 0; 1 if a point failed; 2 for "
    "a wrong file, section or argument, and for output that cannot be written. Far from the projection's origin a "
    "position whose round trip misses by more than a metre is a warning; latigo(1) has the limits.";

const std::map<std::string, Separation> Separations = {{"auto", Separation::Auto},
                                                       {"comma", Separation::Comma},
                                                       {"semicolon", Separation::Semicolon},
                                                       {"tab", Separation::Tab},
                                                       {"blank", Separation::Blank}};

void AddSystem(CLI::App& command, Options& options) {
  command.add_option("FILE", options.file, "configuration file")->required();
  command.add_option("-s,--section", options.section, "section of the file")->capture_default_str();
  command.add_flag("--strict", options.strict, "every warning is a failure: of the point, or of the file");
}

// Options of the commands that read points.
CLI::App* AddPointCommand(CLI::App& app, Options& options, const char* name, const std::string& description) {
  CLI::App* command = app.add_subcommand(name, description);
  command->footer(PointsHelp);
  AddSystem(*command, options);
  command->add_option("POINTS", options.points, "files of points; none or - for standard input");
  command->add_option("--precision", options.precision, "digits behind the point")->check(CLI::Range(0, 15));
  command->add_option("--jobs", options.jobs, "threads; the order of the lines stays")->check(CLI::Range(1, 256));
  command->add_flag("--dms", options.dms, "write angles as degrees, minutes and seconds");
  command
      ->add_option("--separator", options.separation,
                   "what separates fields; auto is blanks or commas. With comma 391390,5817855 is a point")
      ->option_text("auto|comma|semicolon|tab|blank")
      ->transform(CLI::CheckedTransformer(Separations));
  command->add_flag("--lonlat", options.lonlat, "longitude before latitude, in input and output");
  return command;
}

// Beside --wgs84.
void AddShiftOptions(CLI::App& command, Options& options) {
  command
      .add_option_function<std::string>(
          "--outside-grid", [&options](const std::string& how) { options.unshifted = how == "unshifted"; },
          "a point outside the datum grid, or in rows that cannot be read, fails (the default) or keeps its latitude "
          "and longitude with a warning")
      ->option_text("fail|unshifted")
      ->check(CLI::IsMember({"fail", "unshifted"}));
}

void AddGeoidOptions(CLI::App& command, Options& options) {
  command.add_flag(
      "--geoid-on-datum", options.geoidOnDatum,
      "the geoid belongs to the section's own ellipsoid; without it and with --wgs84 it belongs to WGS-84");
}

void AddHeightOptions(CLI::App& command, Options& options) {
  AddGeoidOptions(command, options);
  command.add_flag("--no-height", options.noHeight, "the third field is no height and is carried through");
}

int Run(int argc, char** argv) {
  Options options;
  std::function<int()> run;
  CLI::App app("LATIGO: geodesy for survey and mapping programs", "latigo");
  app.set_version_flag("--version", "latigo " + std::to_string(GetGeodesyVersion() / 100) + "." +
                                        std::to_string(GetGeodesyVersion() % 100));
  app.require_subcommand(1);

  CLI::App* info = app.add_subcommand("info", "Tells what a section describes, or every section of the file.");
  AddSystem(*info, options);
  info->add_option("--lang", options.language, "language of the names: eng, fra, esp")
      ->check(CLI::IsMember({"eng", "fra", "esp"}));
  info->callback([&] { run = [&, info] { return RunInfo(options, info->count("--section") > 0); }; });

  CLI::App* check = app.add_subcommand(
      "check",
      "Says by its exit status alone whether info has nothing to warn of: 0, or 2 if it has, or if the file "
      "cannot be read or a section does not open.");
  AddSystem(*check, options);
  check->callback([&] { run = [&, check] { return RunCheck(options, check->count("--section") > 0); }; });

  CLI::App* forward = AddPointCommand(app, options, "forward",
                                      "Latitude and longitude to easting and northing (x and y), and an ellipsoidal "
                                      "height to the height less the undulation if the section has a geoid.");
  forward->add_flag("--wgs84", options.wgs84, "the input is WGS-84 and goes through the datum shift first");
  AddHeightOptions(*forward, options);
  AddShiftOptions(*forward, options);
  forward->callback([&] { run = [&] { return RunForward(options); }; });

  CLI::App* inverse = AddPointCommand(app, options, "inverse",
                                      "Easting and northing (x and y) to latitude and longitude, and a height to the "
                                      "height plus the undulation if the section has a geoid.");
  inverse->add_flag("--wgs84", options.wgs84, "the output is WGS-84, after the datum shift");
  AddHeightOptions(*inverse, options);
  AddShiftOptions(*inverse, options);
  inverse->callback([&] { run = [&] { return RunInverse(options); }; });

  CLI::App* scale = AddPointCommand(app, options, "scale", "Latitude and longitude to the point scale factor.");
  scale->add_flag("--wgs84", options.wgs84, "the input is WGS-84 and goes through the datum shift first");
  AddShiftOptions(*scale, options);
  scale->add_flag("--grid", options.grid, "read x and y of the projection, before any local grid");
  scale->callback([&] { run = [&] { return RunScale(options); }; });

  CLI::App* undulation = AddPointCommand(app, options, "undulation", "Latitude and longitude to the geoid undulation.");
  undulation->add_flag("--wgs84", options.wgs84, "the input is WGS-84 and goes through the datum shift first");
  AddShiftOptions(*undulation, options);
  AddGeoidOptions(*undulation, options);
  undulation->callback([&] { run = [&] { return RunUndulation(options); }; });

  CLI::App* ecef = AddPointCommand(app, options, "ecef",
                                   "Latitude, longitude and height (0 if there is none) to earth-centred X, Y, Z in "
                                   "metres, on the section's own ellipsoid.");
  ecef->add_flag("--inverse", options.inverse, "X, Y, Z to latitude, longitude and height");
  ecef->callback([&] { run = [&] { return RunEcef(options); }; });

  CLI::App* distance = AddPointCommand(app, options, "distance",
                                       "Lines of two positions, latitude and longitude each, to the distance in grid "
                                       "units with the unit's name, and the azimuth at the first in degrees, clockwise "
                                       "from north; the near way round.");
  distance->add_flag("--rhumb", options.rhumb, "along the rhumb line instead of the great circle");
  distance->callback([&] { run = [&] { return RunDistance(options); }; });

  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    const int status = app.exit(help);
    latigo::cli::FlushOutput();
    return status;
  } catch (const CLI::ParseError& wrong) {
    throw latigo::cli::UsageError(wrong.what());
  }
  const int status = run();
  latigo::cli::FlushOutput();
  return status;
}

int RunProgram(int argc, char** argv) {
  try {
    latigo::cli::PrepareStreams();
    return Run(argc, argv);
  } catch (const std::exception& failure) {
    latigo::cli::Message(failure.what());
    return 2;
  }
}

}  // namespace

#if defined(_WIN32)
// Any name that Windows has is an argument; inside, texts are UTF-8.
extern "C" int wmain(int argc, wchar_t** wide) {
  std::vector<std::string> texts;
  for (int i = 0; i < argc; ++i) {
    texts.push_back(latigo::cli::Narrow(wide[i]));
  }
  std::vector<char*> argv;
  for (std::string& text : texts) {
    argv.push_back(text.data());
  }
  argv.push_back(nullptr);
  return RunProgram(argc, argv.data());
}
#else
int main(int argc, char** argv) {
  return RunProgram(argc, argv);
}
#endif
