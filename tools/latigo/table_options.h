// The options for files with columns.
#pragma once

#include <optional>
#include <string>

namespace latigo::cli {

// The field separator. Blank: each run of blanks and tabs. Auto: found from the lines.
enum class Separation : char { Auto, Comma = ',', Semicolon = ';', Tab = '\t', Blank = ' ' };

// Whether the first line has the names of the columns. Auto: if the chosen columns have words there instead of numbers.
enum class HeaderLine : char { Auto, Yes, No };

struct TableOptions {
  std::string columns;  // numbers from 1, or names of the header line, separated by commas; empty: the first columns
  Separation separation = Separation::Auto;
  std::optional<HeaderLine> header;
  bool decimalComma = false;
  bool append = false;      // results are new columns at the end of the line
  bool dmsColumns = false;  // an angle has 2 to 4 columns: degrees, minutes, seconds, hemisphere

  // Whether lines are read as a table. Without any of these options they are read by ParsePointLine.
  bool Asked() const { return !columns.empty() || header.has_value() || decimalComma || append || dmsColumns; }
};

}  // namespace latigo::cli
