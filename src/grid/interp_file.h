// A grid file: binary values on a lattice of latitudes and longitudes, interpolated between its nodes. The format is in
// docs/grid-files.md.
//
// The file stays open while the object exists, and two of its rows are in memory. A lookup may read the file, so only
// one thread at a time may use an object. Angles are radians, north and east positive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "errors/errcode.h"
#include "platform/files.h"

namespace latigo {

class InterpFile {
 public:
  // Opens the grid; throws the failures of Open. `reverse` mirrors the limits of longitude, but not the nodes.
  InterpFile(const char* path, bool reverse);
  virtual ~InterpFile() = default;

  InterpFile(const InterpFile&) = delete;
  InterpFile& operator=(const InterpFile&) = delete;

  // Closes the previous file, opens another and reads its header. Codes: 1 the file cannot be opened, 3 it is shorter
  // than a header, 2 the header is out of range.
  errcode Open(const char* path, bool reverse);

  // Interpolates between the four nodes around a point. Writes the number of values per node to `count` (may be null),
  // and to `values` as many of them as fit. Codes: 4 the point is outside the lattice (count 0); 13 a row cannot be
  // read completely (count 0).
  errcode Lookup(double latitude, double longitude, std::int32_t* count, std::span<double> values);

  // Interpolates between the values at the corners of a cell, in the order south-west, south-east, north-east,
  // north-west. v is the fraction of the cell in longitude, u in latitude. The weights have zero slope at the nodes.
  virtual double Interpolate(const double* corners, double v, double u) const;

  const std::string& Path() const { return path_; }
  std::int32_t Depth() const { return depth_; }  // values per node

  // For inspection of a file; no operation of the library uses them.
  const std::string& Description() const { return description_; }
  double HeaderValueA() const { return headerValueA_; }
  double HeaderValueB() const { return headerValueB_; }

 private:
  struct Header;

  errcode ReadHeader(const Header& header, bool reverse);
  bool ReadRecords(std::int32_t row, float* records, std::int32_t count) const;
  bool MoveToRow(std::int32_t row);

  InputFile file_;
  std::string path_;
  double south_ = 0, north_ = 0;      // limits of the lattice
  double west_ = 0, east_ = 0;        // limits of the lattice
  double latStep_ = 0, lonStep_ = 0;  // node spacing
  double invLatStep_ = 0, invLonStep_ = 0;
  double headerValueA_ = 0, headerValueB_ = 0;
  std::int32_t rows_ = 0, cols_ = 0, depth_ = 0;
  std::int32_t recordBytes_ = 0;
  std::unique_ptr<float[]> records_;  // room for two records; null if the file has no row
  // The records of the southern and the northern row in memory, each an unused word and the nodes. Either may be the
  // first in `records_`; for a lattice of one row both are that row.
  float* rowLow_ = nullptr;
  float* rowHigh_ = nullptr;
  std::int32_t cachedRow_ = -1;  // the southern row in memory, -1 for none
  std::string description_;
};

}  // namespace latigo
