// The command-line program: describes coordinate systems and converts points.
#include <latigo/latigo.h>

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "angle.h"
#include "commands.h"
#include "coordinate_system.h"
#include "error_text.h"
#include "fit/fit_options.h"
#include "help.h"
#include "output_file.h"
#include "streams.h"
#include "table_arguments.h"
#include "visible.h"

namespace {

using namespace latigo::cli;

// The variable of a script may not be set.
std::string IsGiven(const std::string& name) {
  return name.empty() ? "the name is empty" : "";
}

std::string IsPositive(const std::string& text) {
  const Parsed parsed = ParseNumber(text);
  return parsed.fault == nullptr && parsed.value > 0 ? "" : text + " is not a positive number";
}

void Add(CLI::App& command, Options& options) {
  command.add_option("FILE", options.file)->required();
  command.add_option("-s,--section", options.section)->check(IsGiven);
  command.add_flag("--strict", options.strict);
}

void Add(CLI::App& command, InfoOptions& options) {
  Add(command, static_cast<Options&>(options));
  command.add_option("--lang", options.language)->check(CLI::IsMember({"eng", "fra", "esp"}));
}

void Add(CLI::App& command, ListOptions& options) {
  command.add_option("FILE", options.file);
  command.add_option("TEXT", options.words);
}

void Add(CLI::App& command, TemplateOptions& options) {
  command.add_option("KIND", options.kind);
  command.add_option("ZONE", options.zone);
}

void Add(CLI::App& command, PointOptions& options) {
  Add(command, static_cast<Options&>(options));
  command.add_option("POINTS", options.points);
  command.add_option("--precision", options.precision)->check(CLI::Range(0, 15));
  command.add_option("--jobs", options.jobs)->check(CLI::Range(1, 256));
  command.add_flag("--dms", options.dms);
  AddTable(command, options.table);
  command.add_flag("--lonlat", options.lonlat);
}

void AddOutsideGrid(CLI::App& command, ShiftOptions& options) {
  command.add_option("--outside-grid")
      ->check(CLI::IsMember({"fail", "unshifted"}))
      ->each([&options](const std::string& how) { options.unshifted = how == "unshifted"; });
}

void Add(CLI::App& command, ShiftOptions& options) {
  Add(command, static_cast<PointOptions&>(options));
  command.add_flag("--wgs84", options.wgs84);
  AddOutsideGrid(command, options);
}

void Add(CLI::App& command, UndulationOptions& options) {
  Add(command, static_cast<ShiftOptions&>(options));
  command.add_flag("--geoid-on-datum", options.geoidOnDatum);
}

void Add(CLI::App& command, GridOptions& options) {
  Add(command, static_cast<UndulationOptions&>(options));
  command.add_flag("--no-height", options.noHeight);
}

void Add(CLI::App& command, ConvertOptions& options) {
  Add(command, static_cast<PointOptions&>(options));
  AddOutsideGrid(command, options);
  command.add_flag("--geoid-on-datum", options.geoidOnDatum);
  command.add_option("--to", options.to)->check(IsGiven);
  command.add_option("--to-section", options.toSection)->check(IsGiven);
  command.add_flag("--from-geographic", options.fromGeographic);
  command.add_flag("--to-geographic", options.toGeographic);
  command.add_flag("--same-datum", options.sameDatum);
  CLI::Option* const heights = command.add_option("--heights")
                                   ->check(CLI::IsMember({"geoid", "ellipsoidal"}))
                                   ->each([&options](const std::string& above) {
                                     options.heights = above == "geoid" ? Heights::Geoid : Heights::Ellipsoidal;
                                   });
  command.add_flag("--no-height", options.noHeight)->excludes(heights);
}

void Add(CLI::App& command, ScaleOptions& options) {
  Add(command, static_cast<ShiftOptions&>(options));
  command.add_flag("--grid", options.grid)->excludes("--wgs84");
}

void Add(CLI::App& command, FactorsOptions& options) {
  Add(command, static_cast<UndulationOptions&>(options));
  command.add_flag("--grid", options.grid);
  command.add_flag("--no-height", options.noHeight);
}

void Add(CLI::App& command, EcefOptions& options) {
  Add(command, static_cast<ShiftOptions&>(options));
  command.add_flag("--inverse", options.inverse);
}

void Add(CLI::App& command, DistanceOptions& options) {
  Add(command, static_cast<ShiftOptions&>(options));
  CLI::Option* const rhumb = command.add_flag("--rhumb", options.rhumb);
  command.add_flag("--arc-to-chord", options.arcToChord)->excludes(rhumb);
}

latigo::fit::Reversed ReversedBy(const std::string& axes) {
  using latigo::fit::Reversed;
  return axes == "none" ? Reversed::None : axes == "x" ? Reversed::X : axes == "y" ? Reversed::Y : Reversed::Both;
}

void Add(CLI::App& command, FitOptions& options) {
  Add(command, static_cast<Options&>(options));
  command.add_option("PAIRS", options.points);
  command.add_option("--datum")
      ->check(CLI::IsMember({"geographic", "cartesian"}))
      ->each([&options](const std::string& position) {
        options.pairs = position == "cartesian" ? PairsOf::Cartesian : PairsOf::Geographic;
      });
  command.add_option("--reverse")
      ->check(CLI::IsMember({"none", "x", "y", "both"}))
      ->each([&options](const std::string& axes) { options.reversed = ReversedBy(axes); })
      ->excludes("--datum");
  // --fix-scale=NUMBER; a word after it is not its value.
  command.add_flag("--fix-scale{1}")->check(IsPositive)->each([&options](const std::string& scale) {
    options.fixedScale = ParseNumber(scale).value;
  });
  command.add_option("--sigma", options.sigma)->check(IsPositive);
  command.add_flag("--weights", options.weights);
  command.add_flag("--deviations", options.deviations)->excludes("--weights")->excludes("--sigma");
  command.add_option("--name", options.name)->check(IsGiven);
  AddTableReading(command, options.table);
}

void Add(CLI::App& command, MapOptions& options) {
  Add(command, static_cast<Options&>(options));
  command.add_option("--area", options.area)->check(IsGiven);
  CLI::Option* const points = command.add_option("--points", options.points)->check(IsGiven);
  command.add_flag("--grid", options.grid)->needs(points);
  command.add_flag("--lonlat", options.lonlat)->needs(points);
  AddTableReading(command, options.table);
}

// The files that a command reads, none of which may be its output.
std::vector<std::string> InputsOf(const OutputOptions&) {
  return {};
}
std::vector<std::string> InputsOf(const ListOptions& options) {
  return ListedFiles(options);
}
std::vector<std::string> InputsOfSections(const std::string& file) {
  std::vector<std::string> files = ConfigFile(file).GridFiles();
  files.push_back(file);
  return files;
}
std::vector<std::string> InputsOf(const Options& options) {
  return InputsOfSections(options.file);
}
std::vector<std::string> Joined(std::vector<std::string> files, const std::vector<std::string>& more) {
  files.insert(files.end(), more.begin(), more.end());
  return files;
}
std::vector<std::string> InputsOf(const FitOptions& options) {
  return Joined(InputsOfSections(options.file), {options.points == "-" ? "/dev/stdin" : options.points});
}
std::vector<std::string> InputsOf(const MapOptions& options) {
  return Joined(InputsOfSections(options.file), {options.points == "-" ? "/dev/stdin" : options.points});
}
std::vector<std::string> PointFilesOf(const PointOptions& options) {
  std::vector<std::string> files;
  const std::vector<std::string> standardInput = {"-"};
  for (const std::string& path : options.points.empty() ? standardInput : options.points) {
    files.push_back(path == "-" ? "/dev/stdin" : path);
  }
  return files;
}
std::vector<std::string> InputsOf(const PointOptions& options) {
  return Joined(InputsOfSections(options.file), PointFilesOf(options));
}
std::vector<std::string> InputsOf(const ConvertOptions& options) {
  const std::vector<std::string> files = InputsOf(static_cast<const PointOptions&>(options));
  return options.to.empty() ? files : Joined(files, InputsOfSections(options.to));
}

// Runs a command, with its output to a file if that is asked for.
template <typename OptionsOfIt>
int RunWith(OptionsOfIt& options, int (*run)(const OptionsOfIt&)) {
  if constexpr (std::is_base_of_v<Options, OptionsOfIt> && !std::is_base_of_v<CheckOptions, OptionsOfIt>) {
    ChooseSection(options);
  }
  if (options.output.empty() || options.output == "-" || options.output == "/dev/stdout") {
    if constexpr (std::is_base_of_v<PointOptions, OptionsOfIt>) {
      RequireOtherOutput(PointFilesOf(options));
    }
    return run(options);
  }
  OutputFile output(options.output, InputsOf(options));
  const int status = run(options);
  if (status < 2) {
    output.Commit();
  }
  return status;
}

using Chosen = std::function<int()>;

template <typename OptionsOfIt>
void AddCommand(CLI::App& app, Chosen& chosen, const char* name, int (*run)(const OptionsOfIt&)) {
  CLI::App* command = app.add_subcommand(name);
  const auto options = std::make_shared<OptionsOfIt>();
  Add(*command, *options);
  if constexpr (!std::is_same_v<CheckOptions, OptionsOfIt>) {  // which has no output
    command->add_option("-o,--output", options->output)->check(IsGiven);
  }
  command->callback([&chosen, run, options] { chosen = [run, options] { return RunWith(*options, run); }; });
}

int Run(int argc, char** argv) {
  CLI::App app("", "latigo");
  app.allow_windows_style_options(false);  // a path may begin with a slash
  app.formatter_fn(
      [](const CLI::App* command, const std::string&, CLI::AppFormatMode) { return HelpOf(command->get_name()); });
  app.set_version_flag("--version", "latigo " + std::to_string(GetGeodesyVersion() / 100) + "." +
                                        std::to_string(GetGeodesyVersion() % 100));
  app.require_subcommand(0, 1);
  Chosen chosen;
  AddCommand(app, chosen, "info", RunInfo);
  AddCommand(app, chosen, "check", RunCheck);
  AddCommand(app, chosen, "list", RunList);
  AddCommand(app, chosen, "template", RunTemplate);
  AddCommand(app, chosen, "forward", RunForward);
  AddCommand(app, chosen, "inverse", RunInverse);
  AddCommand(app, chosen, "convert", RunConvert);
  AddCommand(app, chosen, "scale", RunScale);
  AddCommand(app, chosen, "factors", RunFactors);
  AddCommand(app, chosen, "undulation", RunUndulation);
  AddCommand(app, chosen, "ecef", RunEcef);
  AddCommand(app, chosen, "distance", RunDistance);
  AddCommand(app, chosen, "fit", RunFit);
  AddCommand(app, chosen, "map", RunMap);
  int status = 0;
  try {
    app.allow_extras();  // a word that is no command; after the commands, which would inherit it
    app.parse(argc, argv);
    if (!chosen || !app.remaining().empty()) {
      throw UsageError(app.remaining().empty()
                           ? "a command is required; latigo --help lists them"
                           : app.remaining().front() + ": no such command; latigo --help lists them");
    }
    status = chosen();
  } catch (const CLI::Success& help) {
    status = app.exit(help);
  } catch (const CLI::ParseError& wrong) {
    throw UsageError(wrong.what());
  }
  // Flush the output: a full disk is noticed only when the buffer is written.
  FlushOutput();
  return status;
}

int RunProgram(int argc, char** argv) {
  try {
    PrepareStreams();
    return Run(argc, argv);
  } catch (const std::exception& failure) {
    Message(failure.what());
    return 2;
  }
}

}  // namespace

#if defined(_WIN32)
// Arguments may have any characters of Windows; inside the program texts are UTF-8.
extern "C" int wmain(int argc, wchar_t** wide) {
  std::vector<std::string> texts;
  for (int i = 0; i < argc; ++i) {
    texts.push_back(Narrow(wide[i]));
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
