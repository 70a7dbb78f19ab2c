// A binary grid of corrections on a lattice of latitudes and longitudes, blended between its nodes. The format stands
// in docs/grid-files.md.
//
// The file stays open for the object's life, and two of its rows are in memory. A lookup may read the file, so one
// object serves one thread at a time. Angles are radians, north and east positive.
#pragma once

#include <array>
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
  // Opens the grid; throws what Open gives. With `reverse` the limits of longitude are mirrored, but not the nodes.
  InterpFile(const char* path, bool reverse);
  virtual ~InterpFile() = default;

  InterpFile(const InterpFile&) = delete;
  InterpFile& operator=(const InterpFile&) = delete;

  // Closes what an earlier Open left, and reads the header. Codes: 1 the file cannot be opened, 3 it is shorter than a
  // header, 2 the header is out of range.
  errcode Open(const char* path, bool reverse);

  // Blends the four nodes around a point. Writes the number of values of a node to `count` (may be null) and so many of
  // them as there is room for to `values`. Codes: 4 the point lies outside the lattice (count 0); 13 a row cannot be
  // read whole (count 0).
  errcode Lookup(double latitude, double longitude, std::int32_t* count, std::span<double> values);

  // Blends corner values, in the order south-west, south-east, north-east, north-west. v is the fraction of the cell
  // along longitude, u along latitude. The weights have zero slope at the nodes.
  virtual double Interpolate(const double* corners, double v, double u) const;

  const std::string& Path() const { return path_; }
  std::int32_t Depth() const { return depth_; }  // values per node

  // Stored for whoever looks at a grid; no operation of the library reads them.
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
  double latStep_ = 0, lonStep_ = 0;  // distances of the nodes
  double invLatStep_ = 0, invLonStep_ = 0;
  double headerValueA_ = 0, headerValueB_ = 0;
  std::int32_t rows_ = 0, cols_ = 0, depth_ = 0;
  std::int32_t recordBytes_ = 0;
  std::unique_ptr<float[]> records_;  // room for two records; null if the file has no row
  // The records of the southern and the northern row in memory, each a word without meaning and the nodes. Either may
  // be the first in `records_`; a lattice of one row has it as both.
  float* rowLow_ = nullptr;
  float* rowHigh_ = nullptr;
  std::int32_t cachedRow_ = -1;  // the southern row in memory, -1 for none
  std::array<double, 4> corners_{};
  std::string description_;
};

}  // namespace latigo
