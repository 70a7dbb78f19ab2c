// Files with columns: finds the layout of a file from its first lines, and reads its lines.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "line_reader.h"
#include "table_layout.h"
#include "table_options.h"

namespace latigo::cli {

// A file in blocks of lines, with its layout. The separator and the header line are found as follows.
//
// - A first line such as sep=; states the separator.
// - The header of --header auto is the first line if the chosen columns have words there, not numbers (IsWord).
//   Columns by name need a header, which may begin with #.
// - Without --columns the columns are the first ones. Optional values are among them if the first point has a number
//   or an empty field there (or for a text, anything).
// - The separator of --separator auto is that with which the first readable line is a point. Where two give different
//   points, or the comma could also be a decimal comma, the file is refused.
//
// A line break inside a quoted field is part of the field. A quote that is not closed within LongestRecord is a fault
// of its line only.
class TableReader {
 public:
  // Opens the file, or standard input for "-". The list of wanted values remains the caller's. Throws UsageError, also
  // for --columns which do not fit the list.
  TableReader(const std::string& path, const TableOptions& options, std::span<const Wanted> wanted);

  // As BlockReader::Next. The first block contains the lines from which the layout was found. Throws UsageError for a
  // layout with two meanings, a missing column name, and a file that cannot be read.
  bool Next(Block& block);

  // The layout; after the first Next.
  const Layout& Found() const { return *layout_; }
  const std::string& Name() const { return reader_.Name(); }

 private:
  // A separator with the columns that the header has for it.
  struct Candidate {
    char separator;
    std::vector<std::size_t> columns;
    std::size_t headerColumns = 0;
  };

  bool Named() const { return !names_.empty(); }
  bool Find(std::string_view text, std::size_t firstLine, bool atEnd);
  bool TakeRecord(std::string_view& text, std::string_view& line, bool atEnd) const;
  bool Append(Block& block);
  void CompleteRecords(Block& block);
  bool TakeHeader(std::string_view line, std::size_t number);
  bool FindNames(std::string_view line, std::size_t number);
  bool Decide(std::string_view line, std::size_t number);
  void RequireOrder() const;
  bool IsExcluded(const Candidate& candidate, std::string_view line) const;
  Layout LayoutOf(const Candidate& candidate, bool decimalComma, std::string_view line) const;
  [[noreturn]] void Refuse(std::size_t line, const std::string& reason) const;

  TableOptions options_;
  std::span<const Wanted> wanted_;
  std::size_t perAngle_ = 1;
  std::vector<std::string> names_;  // of --columns, if any is not a number; numbers as texts
  std::vector<Candidate> candidates_;
  BlockReader reader_;
  std::size_t separatorLine_ = 0;
  std::size_t headerLine_ = 0;
  std::string header_;  // the line
  bool headerDecided_ = false;
  std::optional<Layout> layout_;
  std::optional<Block> pending_;  // an overlong line after those from which the layout was found
};

// A row of a small file, with its own texts.
struct Record {
  std::size_t line = 0;            // from 1
  std::vector<double> values;      // one for each wanted value; angles in degrees; NaN for none and for texts
  std::vector<std::string> texts;  // one for each wanted value; empty for none
};

struct LineFault {
  std::size_t line;  // from 1
  std::string text;  // "FILE:LINE: column 2: ..."
};

struct Table {
  std::vector<Record> records;
  std::vector<std::size_t> columns;  // of each wanted value that is read, for messages; of an angle the first one
  std::vector<LineFault> faults;     // one for each line that is neither a point, a comment nor a row of empty fields
};

// Reads a whole file. Throws UsageError as TableReader.
Table ReadTable(const std::string& path, const TableOptions& options, std::span<const Wanted> wanted);

}  // namespace latigo::cli
