// The program that makes sections of systems by code, and systems of sections.
#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdio>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "catalogue.h"
#include "describe.h"
#include "export.h"

namespace {

using latigo::system::Crs;
using latigo::system::Database;
using latigo::system::Operation;
using latigo::system::Refused;

struct Arguments {
  std::string system;  // of import and operations
  std::string name;
  latigo::system::Choice choice;
  int points = 200;
  std::string file;  // of export
  std::string section = "Geodesy";
  std::string format = "all";
  latigo::system::SearchOptions search;
  latigo::system::PackOptions pack;
};

// The system of the command line; a refusal names it.
void WithSystem(const Arguments& arguments, const std::function<void(const Database&, const Crs&)>& work) {
  const Database database;
  try {
    work(database, ReadCrs(database, latigo::system::TextOrFile(arguments.system)));
  } catch (const Refused& refused) {
    throw Refused(arguments.system + ": " + refused.what());
  }
}

void RunImport(const Arguments& arguments) {
  WithSystem(arguments, [&](const Database& database, const Crs& crs) {
    const std::vector<Operation> operations = OperationsToWgs84(database, crs);
    try {
      const std::string own = !crs.id.empty() ? crs.id : !crs.name.empty() ? crs.name : arguments.section;
      const std::string name = !arguments.name.empty() ? arguments.name : own;
      const latigo::system::Described made = Describe(database, crs, operations, arguments.choice, arguments.points);
      std::cout << made.section.Write(name);
      for (const std::string& note : made.notes) {
        std::cerr << "latigo-system: note: " << latigo::system::OneLine(note) << '\n';
      }
    } catch (const latigo::system::Ambiguous&) {
      std::cerr << List(operations);
      throw;
    }
  });
}

void RunOperations(const Arguments& arguments) {
  WithSystem(arguments,
             [&](const Database& database, const Crs& crs) { std::cout << List(OperationsToWgs84(database, crs)); });
}

void RunExport(const Arguments& arguments) {
  const std::string source = arguments.file + " [" + arguments.section + "]: ";
  latigo::system::Exported made;
  try {
    made = latigo::system::Export(Database(), arguments.file, arguments.section);
  } catch (const Refused& refused) {
    throw Refused(source + refused.what());
  }
  const auto wanted = [&](const char* format) { return arguments.format == "all" || arguments.format == format; };
  if (wanted("pipeline")) {
    std::cout << made.pipeline << '\n';
  }
  if (wanted("proj") && made.noCrs.empty()) {
    std::cout << made.crs << '\n';
  }
  if (wanted("wkt") && made.noCrs.empty()) {
    std::cout << made.wkt;
  }
  if (arguments.format != "pipeline" && !made.noCrs.empty()) {
    throw Refused(source + made.noCrs);
  }
  std::cerr << "latigo-system: the pipeline is within " << latigo::system::Length(made.largestDifference)
            << " of the section, 2 degrees about its origin"
            << (made.approximation.empty() ? "" : "; " + made.approximation) << '\n';
}

void RunSearch(const Arguments& arguments) {
  if (Search(Database(), arguments.search) == 0) {
    throw Refused("no projected system fits");
  }
}

void AddSystem(CLI::App& command, Arguments& arguments) {
  command
      .add_option("SYSTEM", arguments.system,
                  "code (EPSG:27700), name, PROJ string, WKT or PROJJSON, or a file with one; - for standard input")
      ->required();
}

void AddPlace(CLI::App& command, Arguments& arguments, const std::string& description) {
  command
      .add_option_function<std::string>(
          "--area",
          [&arguments](const std::string& text) {
            double latitude = 0;
            double longitude = 0;
            char rest = 0;
            if (std::sscanf(text.c_str(), "%lf,%lf%c", &latitude, &longitude, &rest) != 2 ||
                !(std::abs(latitude) <= 90 && std::abs(longitude) <= 180)) {
              throw Refused("--area " + text + ": not a latitude and a longitude in degrees, as 52.5,-1.2");
            }
            arguments.choice.position = arguments.search.position = {latitude, longitude};
          },
          description)
      ->option_text("LAT,LON");
}

void AddPoints(CLI::App& command, int& points) {
  command.add_option("--points", points, "random points at which the section is compared with PROJ")
      ->capture_default_str()
      ->check(CLI::Range(1, 1000000));
}

void AddCommands(CLI::App& app, Arguments& arguments, std::function<void()>& run) {
  CLI::App* importing =
      app.add_subcommand("import", "Writes a section of a configuration file for a projected system.");
  AddSystem(*importing, arguments);
  importing->add_option("--name", arguments.name, "name of the section; its code or name if there is none");
  auto* operation = importing->add_option("--operation", arguments.choice.operation,
                                          "operation to WGS 84, by its number in the list or its code");
  AddPlace(*importing, arguments, "take the best operation for that place; degrees");
  auto* none = importing->add_flag("--no-datum", arguments.choice.none, "leave the datum shift out");
  operation->excludes("--area");
  none->excludes("--area")->excludes(operation);
  AddPoints(*importing, arguments.points);
  importing->callback([&] { run = [&] { RunImport(arguments); }; });

  CLI::App* operations = app.add_subcommand("operations", "Lists the operations from the datum of a system to WGS 84.");
  AddSystem(*operations, arguments);
  operations->callback([&] { run = [&] { RunOperations(arguments); }; });

  CLI::App* exporting = app.add_subcommand(
      "export",
      "Writes a section as a PROJ pipeline from WGS 84 (latitude, longitude in degrees), as a PROJ string of a system, "
      "and as WKT2.");
  exporting->add_option("FILE", arguments.file, "configuration file")->required();
  exporting->add_option("-s,--section", arguments.section, "section of the file")->capture_default_str();
  exporting->add_option("--format", arguments.format, "what to write")
      ->option_text("all|pipeline|proj|wkt")
      ->check(CLI::IsMember({"all", "pipeline", "proj", "wkt"}));
  exporting->callback([&] { run = [&] { RunExport(arguments); }; });

  CLI::App* search = app.add_subcommand("search", "Lists projected systems: code, name and area, by tabulators.");
  search->add_option("TEXT", arguments.search.words, "words of code, name or area; all must occur");
  AddPlace(*search, arguments, "whose area holds that place; degrees");
  search->callback([&] { run = [&] { RunSearch(arguments); }; });

  CLI::App* pack = app.add_subcommand("pack",
                                      "Writes a section for every projected system of the database that can be "
                                      "expressed, with the datum shift if there "
                                      "is but one and it needs no file, and lists the others with method and reason.");
  pack->add_option("--authority", arguments.pack.authority, "whose systems")->capture_default_str();
  pack->add_option("--report", arguments.pack.report, "file for a line a system: code, method, differences or reason");
  pack->add_option("--jobs", arguments.pack.jobs, "threads; one for each processor without it")
      ->check(CLI::Range(1, 256));
  AddPoints(*pack, arguments.pack.points);
  pack->callback([&] { run = [&] { Pack(Database(), arguments.pack); }; });
}

int Run(int argc, char** argv) {
  Arguments arguments;
  std::function<void()> run;
  CLI::App app("Coordinate reference systems by code as sections for latigo, and sections as PROJ strings and WKT",
               "latigo-system");
  const std::int32_t version = GetGeodesyVersion();
  app.set_version_flag("--version", "latigo-system " + std::to_string(version / 100) + "." +
                                        std::to_string(version % 100) + ", PROJ " + proj_info().version);
  app.require_subcommand(0, 1);
  AddCommands(app, arguments, run);
  try {
    app.allow_extras();  // a word that is no command; after the commands, which would inherit it
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    return app.exit(help);
  } catch (const CLI::ParseError& wrong) {
    throw Refused(wrong.what());
  }
  if (!run || !app.remaining().empty()) {
    throw Refused(app.remaining().empty()
                      ? "a command is required; latigo-system --help lists them"
                      : app.remaining().front() + ": no such command; latigo-system --help lists them");
  }
  run();
  if (!std::cout.flush()) {
    throw Refused("standard output cannot be written");
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(argc, argv);
  } catch (const std::exception& failure) {
    std::cerr << "latigo-system: " << latigo::system::OneLine(failure.what()) << '\n';
    return 2;
  }
}
