#include "grid/interp_file.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <string_view>
#include <utility>

#include "math/angles.h"
#include "platform/ascii.h"

namespace latigo {

static_assert(std::endian::native == std::endian::little, "grid files are little-endian and read as they are");

// The first 96 bytes of the file.
struct InterpFile::Header {
  char text[56];    // description; with the magic 30 bytes of description, and two doubles at 32 and 40
  char magic[8];    // "TIDEWRAK", compared without case; or other bytes
  std::int32_t nc;  // nodes per row
  std::int32_t nr;  // rows
  std::int32_t nz;  // values per node
  float west;       // longitude of column 0, degrees
  float lonstep;    // degrees
  float south;      // latitude of row 0, degrees
  float latstep;    // degrees
  std::int32_t unused;
};

namespace {

constexpr std::string_view Magic = "TIDEWRAK";
constexpr std::size_t ShortDescription = 30;
constexpr std::int64_t MaxRecordBytes = 64 << 20;  // two are in memory

// A step, rounded to whole arc seconds, since the file stores degrees in single precision. Radians.
double RoundedStep(float degrees) {
  const double arcSeconds = std::trunc(double{degrees} * 3600.0 + 0.5);
  return arcSeconds / 3600.0 * Pi / 180;
}

// The weight of a corner of the cell is S(x) S(y).
double S(double t) {
  return t * t * (3 - 2 * t);
}

// A cell along one axis: the index of its first node and of its second, and the fraction between them.
struct Cell {
  std::int32_t first;
  std::int32_t second;
  double fraction;
};

// A point on the northern or eastern limit belongs to the last cell, with fraction 1. A lattice of one node has no
// cell; that node is used for both ends.
Cell CellOf(double position, double origin, double step, double invStep, std::int32_t nodes) {
  const double cells = (position - origin) * invStep;
  if (!(cells < nodes - 1)) {
    return nodes == 1 ? Cell{0, 0, 0.0} : Cell{nodes - 2, nodes - 1, 1.0};
  }
  const auto first = static_cast<std::int32_t>(cells);
  return {first, first + 1, (position - (first * step + origin)) * invStep};
}

errcode Failure(ErrorNumber code) {
  return errcode(code, Fatal, GridFacility);
}

}  // namespace

InterpFile::InterpFile(const char* path, bool reverse) {
  Open(path, reverse);  // an unread failure is thrown
}

errcode InterpFile::Open(const char* path, bool reverse) {
  records_.reset();
  cachedRow_ = -1;
  path_ = path;

  if (!file_.Open(path)) {
    return Failure(FileNotOpened);
  }
  Header header;
  static_assert(sizeof header == 96);
  if (!file_.ReadAt(0, &header, sizeof header)) {
    return Failure(HeaderShort);
  }
  return ReadHeader(header, reverse);
}

errcode InterpFile::ReadHeader(const Header& header, bool reverse) {
  south_ = double{header.south} * Pi / 180;
  west_ = double{header.west} * Pi / 180;
  if (!(-HalfPi <= south_ && south_ <= HalfPi && -Pi <= west_ && west_ <= Pi)) {
    return Failure(HeaderOutOfRange);
  }
  latStep_ = RoundedStep(header.latstep);
  lonStep_ = RoundedStep(header.lonstep);
  if (!(latStep_ > 0 && lonStep_ > 0 && std::isfinite(latStep_) && std::isfinite(lonStep_))) {
    return Failure(HeaderOutOfRange);
  }
  invLatStep_ = 1 / latStep_;
  invLonStep_ = 1 / lonStep_;
  rows_ = header.nr;
  cols_ = header.nc;
  depth_ = header.nz;
  if (!(rows_ > 0 && cols_ > 0 && depth_ > 0)) {
    return Failure(HeaderOutOfRange);
  }
  const std::int64_t recordValues = std::int64_t{cols_} * depth_ + 1;
  if (recordValues > MaxRecordBytes / 4) {
    return Failure(HeaderOutOfRange);
  }
  recordBytes_ = static_cast<std::int32_t>(recordValues * 4);
  north_ = south_ + latStep_ * (rows_ - 1);
  east_ = west_ + lonStep_ * (cols_ - 1);
  // No allocation for a file without a complete row: the header alone may request megabytes.
  if (char last; file_.ReadAt(std::int64_t{recordBytes_} * 2 - 1, &last, 1)) {
    records_.reset(new float[static_cast<std::size_t>(recordValues * 2)]);
    rowLow_ = records_.get();
    rowHigh_ = rows_ == 1 ? rowLow_ : rowLow_ + recordValues;
  }

  if (EqualIgnoringCase(std::string_view(header.magic, sizeof header.magic), Magic)) {
    std::memcpy(&headerValueA_, header.text + 32, sizeof headerValueA_);
    std::memcpy(&headerValueB_, header.text + 40, sizeof headerValueB_);
    description_.assign(header.text, ShortDescription);
  } else {
    headerValueA_ = headerValueB_ = 0;
    description_.assign(header.text, sizeof header.text);
  }
  if (reverse) {
    const double east = east_;
    east_ = -west_;
    west_ = -east;
  }
  return errcode();
}

errcode InterpFile::Lookup(double latitude, double longitude, std::int32_t* count, std::span<double> values) {
  if (count != nullptr) {
    *count = 0;
  }
  // A lattice that crosses the 180 degree meridian continues eastward with longitudes above 180 degrees.
  if (east_ > Pi && longitude < 0) {
    longitude += TwoPi;
  }
  if (!(south_ <= latitude && latitude <= north_ && west_ <= longitude && longitude <= east_)) {
    return Failure(OutsideGrid);
  }
  const Cell row = CellOf(latitude, south_, latStep_, invLatStep_, rows_);
  const Cell col = CellOf(longitude, west_, lonStep_, invLonStep_, cols_);
  if (row.first != cachedRow_ && !MoveToRow(row.first)) {
    return Failure(RowUnreadable);
  }
  const float* const low = rowLow_ + 1;
  const float* const high = rowHigh_ + 1;
  const auto depth = static_cast<std::size_t>(depth_);
  const std::size_t west = depth * static_cast<std::size_t>(col.first);
  const std::size_t east = depth * static_cast<std::size_t>(col.second);
  for (std::size_t i = 0; i < std::min(depth, values.size()); ++i) {
    const double corners[] = {low[west + i], low[east + i], high[east + i], high[west + i]};
    values[i] = Interpolate(corners, col.fraction, row.fraction);
  }
  if (count != nullptr) {
    *count = depth_;
  }
  return errcode();
}

// Row r is preceded by the header's record and r rows.
bool InterpFile::ReadRecords(std::int32_t row, float* records, std::int32_t count) const {
  return file_.ReadAt((std::int64_t{row} + 1) * recordBytes_, records,
                      static_cast<std::uint32_t>(recordBytes_) * static_cast<std::uint32_t>(count));
}

// Loads a row and the next one north of it. A row that is in memory is not read again; two rows are contiguous in the
// file and take one read.
bool InterpFile::MoveToRow(std::int32_t row) {
  if (!records_) {
    return false;
  }
  const std::int32_t before = std::exchange(cachedRow_, -1);
  bool read = false;
  if (before >= 0 && row == before + 1) {
    std::swap(rowLow_, rowHigh_);
    read = ReadRecords(row + 1, rowHigh_, 1);
  } else if (row == before - 1) {
    std::swap(rowLow_, rowHigh_);
    read = ReadRecords(row, rowLow_, 1);
  } else {
    if (rowLow_ > rowHigh_) {
      std::swap(rowLow_, rowHigh_);
    }
    read = ReadRecords(row, rowLow_, std::min(rows_, 2));
  }
  if (read) {
    cachedRow_ = row;
  }
  return read;
}

double InterpFile::Interpolate(const double* corners, double v, double u) const {
  const double east = S(v);
  const double north = S(u);
  const double west = 1 - east;  // S(1 - v)
  const double south = 1 - north;
  return corners[0] * (west * south) + corners[1] * (east * south) + corners[2] * (east * north) +
         corners[3] * (west * north);
}

}  // namespace latigo
