// A grid file of an object, beside the library's own access to it: which file it is, and whether a datum grid has a
// value at a position. The library converts outside a datum grid without a shift and without a code.
// The format is that of docs/grid-files.md.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace latigo::python {

// Codes of failures without a failed call of the library; negative, so that they differ from its codes.
enum Fault : std::int32_t {
  NotFinite = -1,
  BeyondPole = -2,
  OutsideDatumGrid = -3,
  DatumRowUnreadable = -4,
  GridFileChanged = -5,
  ObjectClosed = -6,
  BeyondTurn = -7,
};

// Tells a file from another one, or from itself before it was written anew.
struct Identity {
  dev_t device = 0;
  ino_t node = 0;
  off_t size = 0;
  std::int64_t modified = 0;  // nanoseconds

  bool operator==(const Identity&) const = default;
};

// An open file. It is read by position, so that processes after a fork do not disturb each other.
class GridFile {
 public:
  // `path` as the library returns it, with slashes or backslashes. Throws std::system_error.
  explicit GridFile(const std::string& path);
  ~GridFile();
  GridFile(const GridFile&) = delete;
  GridFile& operator=(const GridFile&) = delete;

  const std::string& Path() const { return path_; }
  const Identity& Id() const { return id_; }
  // Reads at most `size` bytes at an offset; returns the number read, less than `size` at the end of the file or if it
  // cannot be read.
  std::size_t ReadAt(std::int64_t offset, void* buffer, std::size_t size) const;

 private:
  std::string path_;  // with slashes
  int file_ = -1;
  Identity id_;
};

// The area of a datum grid. It keeps the number of the last row that was found readable, so only one thread at a time
// may use it.
class DatumArea {
 public:
  // A file that the library has accepted.
  explicit DatumArea(const GridFile& file);

  // 0 if the grid has a value at the position in radians, else OutsideDatumGrid or DatumRowUnreadable.
  std::int32_t CodeAt(double latitude, double longitude);

  // Whether the grid shifts latitude and longitude only.
  bool KeepsHeights() const { return keepsHeights_; }

  double South() const { return south_; }
  double West() const { return west_; }
  double North() const { return north_; }
  double East() const { return east_; }

 private:
  bool Readable(std::int32_t row);

  const GridFile& file_;
  double south_ = 0, north_ = 0, west_ = 0, east_ = 0;  // radians; east may be beyond pi
  double invLatStep_ = 0;
  std::int32_t rows_ = 0;
  bool keepsHeights_ = false;
  std::size_t recordBytes_ = 0;
  std::vector<char> records_;
  std::int32_t readableRow_ = -1;  // this row and the next one can be read; -1 for none
};

}  // namespace latigo::python
