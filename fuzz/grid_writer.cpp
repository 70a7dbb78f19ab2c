// A lattice and its values out of bytes, written as a grid file by latigo-grid: what the library reads there is what was
// written, to the float, and a lattice that the library would not read is refused.
#include <latigo/latigo.h>

#include <algorithm>
#include <span>
#include <vector>

#include "fuzz_input.h"
#include "grid/interp_file.h"
#include "grid_file.h"
#include "grid_writer.h"

namespace {

using namespace fuzz;
using namespace latigo::grids;

// Rows of values, some of any bit pattern; NaN and infinities are refused.
bool WriteRows(Input& in, GridWriter& writer, const Lattice& lattice, std::vector<std::vector<float>>& rows) {
  for (std::int64_t r = 0; r < lattice.rows; ++r) {
    std::vector<float>& row = rows.emplace_back(static_cast<std::size_t>(lattice.cols * lattice.depth));
    bool finite = true;
    for (float& value : row) {
      value = in.Below(8) == 0 ? in.Take<float>() : static_cast<float>(in.Take<std::int16_t>()) / 64;
      finite = finite && std::isfinite(value);
    }
    try {
      writer.AddRow(row);
      REQUIRE(finite);
    } catch (const Refused&) {
      REQUIRE(!finite);
      return false;
    }
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in{data, size};
  const bool wild = in.Below(4) == 0;
  Lattice lattice;
  lattice.west = wild ? in.Take<float>() : static_cast<float>(in.Between(-180, 180));
  lattice.south = wild ? in.Take<float>() : static_cast<float>(in.Between(-90, 80));
  lattice.lonStep = wild ? in.Take<std::int32_t>() : 1 + static_cast<int>(in.Below(250));
  lattice.latStep = wild ? in.Take<std::int32_t>() : 1 + static_cast<int>(in.Below(250));
  lattice.cols = wild ? in.Take<std::int32_t>() : static_cast<std::int64_t>(in.Below(40));
  lattice.rows = wild ? in.Take<std::int32_t>() : static_cast<std::int64_t>(in.Below(6));
  lattice.depth = wild ? in.Take<std::int32_t>() : 1 + static_cast<int>(in.Below(3));
  const std::string path = Scratch() + "/written", description = in.Text(in.Below(80));
  std::remove(path.c_str());
  const bool holds = Fits(lattice) && std::fabs(lattice.west) <= 180 && std::fabs(lattice.south) <= 90;
  if (holds && lattice.FileBytes() > 1 << 18) { return 0; }  // slow
  try {
    GridWriter writer(path, lattice);
    REQUIRE(holds);
    std::vector<std::vector<float>> rows;
    if (!WriteRows(in, writer, lattice, rows)) { return 0; }
    writer.Finish(description);

    GridHeader header;
    REQUIRE(ReadGridHeader(path, header) && header.fileBytes == lattice.FileBytes());
    REQUIRE(Same(header.lattice.west, lattice.west) && Same(header.lattice.south, lattice.south));
    REQUIRE(header.lattice.lonStep == lattice.lonStep && header.lattice.latStep == lattice.latStep);
    latigo::InterpFile grid(path.c_str(), false);
    REQUIRE(grid.Depth() == lattice.depth);
    REQUIRE(description.size() > 56 || grid.Description().rfind(description, 0) == 0 || header.magic);
    bool tame = true;  // a huge value beside a node would count
    for (const std::vector<float>& row : rows) {
      tame = tame && std::all_of(row.begin(), row.end(), [](float value) { return std::fabs(value) < 1000; });
    }
    ForEachRow(path, header, [&](std::int64_t r, std::span<const float> values) {
      const std::vector<float>& row = rows[static_cast<std::size_t>(r)];
      REQUIRE(std::memcmp(row.data(), values.data(), values.size_bytes()) == 0 && values.size() == row.size());
      // At a node inside the limits the library's answer is its value, but for the rounding of the position.
      const std::int64_t c = static_cast<std::int64_t>(in.Below(static_cast<std::size_t>(lattice.cols)));
      std::vector<double> found(static_cast<std::size_t>(lattice.depth), Untouched);
      const double phi = lattice.LatitudeOf(r) * Degree, lambda = lattice.LongitudeOf(c) * Degree;
      if (grid.Lookup(phi, lambda, nullptr, found).code() != 0) { return; }
      for (int i = 0; i < lattice.depth; ++i) {
        const double value = row[static_cast<std::size_t>(c * lattice.depth + i)];
        REQUIRE(!tame || std::fabs(found[static_cast<std::size_t>(i)] - value) < 1e-3);
      }
    });
  } catch (const Refused&) { REQUIRE(!holds && ReadFile(path).empty()); }
  return 0;
}
