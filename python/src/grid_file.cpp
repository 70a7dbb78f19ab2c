#include "grid_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <system_error>

namespace latigo::python {

namespace {

constexpr double Pi = 3.141592653589793;

// The first 96 bytes.
struct Header {
  char text[64];
  std::int32_t nc;  // nodes per row
  std::int32_t nr;  // rows
  std::int32_t nz;  // values per node
  float west;       // degrees, as all that follow
  float lonstep;
  float south;
  float latstep;
  std::int32_t unused;
};
static_assert(sizeof(Header) == 96);

// A step, rounded to whole arc seconds as the library does. Radians.
double RoundedStep(float degrees) {
  return std::trunc(double{degrees} * 3600.0 + 0.5) / 3600.0 * Pi / 180;
}

}  // namespace

GridFile::GridFile(const std::string& path) : path_(path) {
  std::replace(path_.begin(), path_.end(), '\\', '/');
  file_ = open(path_.c_str(), O_RDONLY | O_CLOEXEC);
  struct stat status {};
  if (file_ < 0 || fstat(file_, &status) != 0) {
    const int reason = errno;
    if (file_ >= 0) {
      close(file_);
    }
    throw std::system_error(reason, std::generic_category(), path_);
  }
  id_ = Identity{.device = status.st_dev,
                 .node = status.st_ino,
                 .size = status.st_size,
                 .modified = std::int64_t{status.st_mtim.tv_sec} * 1000000000 + status.st_mtim.tv_nsec};
}

GridFile::~GridFile() {
  close(file_);
}

std::size_t GridFile::ReadAt(std::int64_t offset, void* buffer, std::size_t size) const {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t count =
        pread(file_, static_cast<char*>(buffer) + done, size - done, offset + static_cast<std::int64_t>(done));
    if (count == 0 || (count < 0 && errno != EINTR)) {
      break;
    }
    done += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  return done;
}

constexpr std::int32_t LatitudeAndLongitude = 2;  // values per node of a datum grid without heights

DatumArea::DatumArea(const GridFile& file) : file_(file) {
  Header header{};
  if (file.ReadAt(0, &header, sizeof header) != sizeof header) {
    throw std::system_error(EIO, std::generic_category(), file.Path());
  }
  rows_ = header.nr;
  keepsHeights_ = header.nz == LatitudeAndLongitude;
  recordBytes_ = (static_cast<std::size_t>(header.nc) * static_cast<std::size_t>(header.nz) + 1) * 4;
  const double latStep = RoundedStep(header.latstep);
  invLatStep_ = 1 / latStep;
  south_ = double{header.south} * Pi / 180;
  west_ = double{header.west} * Pi / 180;
  north_ = south_ + latStep * (rows_ - 1);
  east_ = west_ + RoundedStep(header.lonstep) * (header.nc - 1);
}

std::int32_t DatumArea::CodeAt(double latitude, double longitude) {
  if (east_ > Pi && longitude < 0) {
    longitude += 2 * Pi;
  }
  if (!(south_ <= latitude && latitude <= north_ && west_ <= longitude && longitude <= east_)) {
    return OutsideDatumGrid;
  }
  const double cells = (latitude - south_) * invLatStep_;
  const auto row = cells < rows_ - 1 ? static_cast<std::int32_t>(cells) : std::max(rows_ - 2, 0);
  return Readable(row) ? 0 : DatumRowUnreadable;
}

// Reads the row and the next one, as the library does.
bool DatumArea::Readable(std::int32_t row) {
  if (row != readableRow_) {
    const std::size_t size = recordBytes_ * static_cast<std::size_t>(std::min(rows_, 2));
    records_.resize(size);
    const auto offset = (std::int64_t{row} + 1) * static_cast<std::int64_t>(recordBytes_);
    readableRow_ = file_.ReadAt(offset, records_.data(), size) == size ? row : -1;
  }
  return row == readableRow_;
}

}  // namespace latigo::python
