// The arguments for files with columns.
#pragma once

#include "table_options.h"

namespace CLI {
class App;
}

namespace latigo::cli {

// Adds --columns, --separator, --header, --decimal-comma and --dms-columns to a command that reads a table.
void AddTableReading(CLI::App& command, TableOptions& options);

// Also --append, for a command that writes its results into the lines.
void AddTable(CLI::App& command, TableOptions& options);

}  // namespace latigo::cli
