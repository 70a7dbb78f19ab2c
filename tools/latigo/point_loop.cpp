#include "point_loop.h"

#include <future>
#include <memory>
#include <utility>
#include <vector>

#include "block_run.h"
#include "error_text.h"
#include "line_reader.h"
#include "print_queue.h"
#include "report.h"
#include "table_form.h"
#include "table_reader.h"

namespace latigo::cli {

int RunPoints(const PointOptions& options, const PointCommand& command) {
  const Between& between = command.between;
  CheckSection(options, between.shift || (between.heightShift && between.datum == nullptr));
  std::vector<std::unique_ptr<const Converter>> converters(static_cast<std::size_t>(options.jobs));  // one per thread
  for (auto& converter : converters) {
    auto made = std::make_unique<Converter>(options, command.between);
    if (command.makeTarget) {
      made->SetTarget(command.makeTarget());
    }
    converter = std::move(made);
  }
  const std::vector<std::string> standardInput = {"-"};
  const std::vector<std::string>& files = options.points.empty() ? standardInput : options.points;
  Report report(files, *converters.front());
  std::unique_ptr<PrintQueue> queue;
  if (converters.size() > 1) {
    queue = std::make_unique<PrintQueue>(report, converters.size());
  }
  std::size_t turn = 0;
  // Converts all blocks of a file; `form` returns its form after the first block is read.
  const auto convertAll = [&](auto& reader, const auto& form) {
    for (Block block; reader.Next(block); block = {}) {  // a converter takes the block with it
      // The oldest block in work is finished before its converter is used again.
      const auto convert = [&options, &command, &converter = *converters[turn], form = form(), file = reader.Name(),
                            block = std::move(block)] {
        Output output;
        output.file = file;
        output.bytes = block.bytes.size();
        BlockRun(options, command, converter, form.get(), file, output).Run(block);
        return output;
      };
      if (!queue) {
        report.Print(convert());
        continue;
      }
      queue->WaitForRoom();
      queue->Add(std::async(std::launch::async, convert));
      turn = (turn + 1) % converters.size();
    }
  };
  using Form = std::shared_ptr<const TableForm>;
  const std::vector<Wanted> wanted = WantedOf(command);
  for (const std::string& path :
       files) {  // if one cannot be read, the queue still prints the output of those before it
    if (!options.table.Asked()) {
      BlockReader reader(path);
      convertAll(reader, [] { return Form(); });
      continue;
    }
    TableReader reader(path, options.table, wanted);
    Form form;
    convertAll(reader, [&] {
      form = form ? form : std::make_shared<const TableForm>(command, reader.Found(), options.table.append);
      return form;
    });
  }
  if (queue) {
    queue->WaitForAll();
  }
  return report.Finish();
}

}  // namespace latigo::cli
