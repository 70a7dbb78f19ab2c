#include "table_arguments.h"

#include <CLI/CLI.hpp>
#include <map>

namespace latigo::cli {

namespace {

const std::map<std::string, Separation> Separations = {{"auto", Separation::Auto},
                                                       {"comma", Separation::Comma},
                                                       {"semicolon", Separation::Semicolon},
                                                       {"tab", Separation::Tab},
                                                       {"blank", Separation::Blank}};

}  // namespace

void AddTableReading(CLI::App& command, TableOptions& options) {
  command.add_option("--columns", options.columns);
  command.add_option("--separator", options.separation)->transform(CLI::CheckedTransformer(Separations));
  command.add_option("--header")
      ->check(CLI::IsMember({"auto", "yes", "no"}))
      ->each([&options](const std::string& header) {
        options.header = header == "yes" ? HeaderLine::Yes : header == "no" ? HeaderLine::No : HeaderLine::Auto;
      });
  command.add_flag("--decimal-comma", options.decimalComma);
  command.add_flag("--dms-columns", options.dmsColumns);
}

void AddTable(CLI::App& command, TableOptions& options) {
  AddTableReading(command, options);
  command.add_flag("--append", options.append);
}

}  // namespace latigo::cli
