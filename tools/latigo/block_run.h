// The conversion of one block of lines.
#pragma once

#include <string>
#include <string_view>

#include "converter.h"
#include "line_reader.h"
#include "point_loop.h"
#include "report.h"
#include "table_form.h"

namespace latigo::cli {

// The lines of one block, converted by one object. Nothing is allocated per line that does not fail.
class BlockRun {
 public:
  // Without a form, lines are read by the command's function, and rewritten from their beginning.
  BlockRun(const PointOptions& options, const PointCommand& command, const Converter& converter, const TableForm* form,
           const std::string& file, Output& output)
      : options_(options), command_(command), converter_(converter), form_(form), file_(file), output_(output) {}

  void Run(const Block& block);

 private:
  // What is written in place of the values.
  struct Items {
    const Result* result = nullptr;  // null for a point that failed: * for each
    std::size_t count = 0;           // with the unit
  };

  void RunLine(std::string_view line);
  PointLine ReadLine(std::string_view line);
  PointLine ReadPlain(std::string_view line) const;
  PointLine ReadRow(std::string_view line);
  std::string_view ChosenPart() const;
  bool ConvertPoint(std::string_view line, const PointLine& point, Result& result);
  bool Accept(std::string_view line, const PointLine& point, unsigned doubts);
  void AddMessage(const Fault& fault);
  void Fail(std::string_view line, const PointLine& point, const Fault& fault);

  void WriteLine(std::string_view line, const PointLine& point, const Items& items);
  void WriteInPlace(std::string_view line, const Items& items);
  void WriteAppended(std::string_view line, const Items& items);
  void WriteHeader(std::string_view line);
  void WriteItem(const Items& items, std::size_t index);
  void WriteValue(const Value& value);
  void WriteEnd() { output_.text.Text(end_); }

  const PointOptions& options_;
  const PointCommand& command_;
  const Converter& converter_;
  const TableForm* const form_;
  const std::string& file_;
  Output& output_;
  std::size_t line_ = 0;
  bool returnInside_ = false;    // the block has a carriage return that ends no line
  std::string_view end_ = "\n";  // of the line, or of the one before it if the last one has none
  Row row_;
};

}  // namespace latigo::cli
