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

// Columns for an empty list, as of the variable of a script that is not set, would be the first ones.
std::string IsList(const std::string& columns) {
  return columns.empty() ? "the list is empty" : "";
}

}  // namespace

void AddTableReading(CLI::App& command, TableOptions& options) {
  command.add_option("--columns", options.columns)->check(IsList);
  command.add_option("--separator")
      ->check(CLI::IsMember({"auto", "comma", "semicolon", "tab", "blank"}))
      ->each([&options](const std::string& name) { options.separation = Separations.at(name); });
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
