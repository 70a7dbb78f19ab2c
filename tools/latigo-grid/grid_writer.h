// Writes grid files, docs/grid-files.md: beside the wanted name, and under it at the end.
#pragma once

#include <cstdio>
#include <memory>
#include <span>
#include <string>

#include "lattice.h"

namespace latigo::grids {

class GridWriter {
 public:
  // Refuses a lattice that the library would not read, and a folder that cannot be written.
  GridWriter(std::string path, const Lattice& lattice);
  // Removes what Finish has not given its name.
  ~GridWriter();
  GridWriter(const GridWriter&) = delete;
  GridWriter& operator=(const GridWriter&) = delete;

  // The next row from the south: its nodes from the west, each with its values. Refuses values that are not finite.
  void AddRow(std::span<const float> values);

  // The file under its temporary name with all rows in it, for reading.
  const std::string& Complete();

  // Writes the description to the header, cut to 56 bytes, and renames the file.
  void Finish(const std::string& description);

 private:
  void Write(const void* bytes, std::size_t count);
  void WriteHeader(const std::string& description);

  std::string path_, temporary_;
  Lattice lattice_;
  std::int64_t rows_ = 0;  // written
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

}  // namespace latigo::grids
