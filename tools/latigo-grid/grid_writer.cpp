#include "grid_writer.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <bit>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "surface.h"

namespace latigo::grids {

static_assert(std::endian::native == std::endian::little, "grid files are little-endian and written as they are");

namespace {

constexpr std::size_t DescriptionBytes = 56;

[[noreturn]] void Fail(const std::string& path) {
  throw Refused(path + ": " + std::strerror(errno));
}

}  // namespace

GridWriter::GridWriter(std::string path, const Lattice& lattice)
    : path_(std::move(path)), temporary_(path_ + ".XXXXXX"), lattice_(lattice), file_(nullptr, std::fclose) {
  if (!Fits(lattice) || !(std::fabs(lattice.south) <= 90 && std::fabs(lattice.west) <= 180)) {
    throw Refused(path_ + ": a grid file cannot hold this lattice");
  }
  const int descriptor = mkstemp(temporary_.data());
  if (descriptor < 0) {
    temporary_.clear();
    Fail(path_);
  }
  file_.reset(fdopen(descriptor, "w+b"));
  WriteHeader("");
}

GridWriter::~GridWriter() {
  if (!temporary_.empty()) {
    std::remove(temporary_.c_str());
  }
}

void GridWriter::Write(const void* bytes, std::size_t count) {
  if (std::fwrite(bytes, 1, count, file_.get()) != count) {
    Fail(path_);
  }
}

void GridWriter::WriteHeader(const std::string& description) {
  // Steps are rounded to whole arc seconds by the reader.
  const float degrees[] = {lattice_.west, static_cast<float>(lattice_.lonStep / 3600.0), lattice_.south,
                           static_cast<float>(lattice_.latStep / 3600.0), 0};
  const std::int32_t counts[] = {static_cast<std::int32_t>(lattice_.cols), static_cast<std::int32_t>(lattice_.rows),
                                 lattice_.depth};
  std::vector<char> record(static_cast<std::size_t>(lattice_.RecordBytes()), '\0');
  std::fill_n(record.begin(), DescriptionBytes + 8, ' ');
  std::copy_n(description.begin(), std::min(description.size(), DescriptionBytes), record.begin());
  std::memcpy(&record[64], counts, sizeof counts);
  std::memcpy(&record[76], degrees, sizeof degrees);
  Write(record.data(), record.size());
}

void GridWriter::AddRow(std::span<const float> values) {
  constexpr float Lead = 0;
  if (values.size() != static_cast<std::size_t>(lattice_.cols * lattice_.depth) || rows_ == lattice_.rows) {
    throw Refused(path_ + ": a row that is none of the lattice");
  }
  if (!std::all_of(values.begin(), values.end(), [](float value) { return std::isfinite(value); })) {
    throw Refused(path_ + ": a value that is not finite");
  }
  Write(&Lead, sizeof Lead);
  Write(values.data(), values.size_bytes());
  ++rows_;
}

const std::string& GridWriter::Complete() {
  if (rows_ != lattice_.rows || std::fflush(file_.get()) != 0) {
    Fail(path_);
  }
  return temporary_;
}

void GridWriter::Finish(const std::string& description) {
  Complete();
  std::rewind(file_.get());
  WriteHeader(description);
  const mode_t mask = umask(0);
  umask(mask);
  if (std::fflush(file_.get()) != 0 || fchmod(fileno(file_.get()), 0666 & ~mask) != 0 ||
      fsync(fileno(file_.get())) != 0 || std::rename(temporary_.c_str(), path_.c_str()) != 0) {
    Fail(path_);
  }
  temporary_.clear();
}

}  // namespace latigo::grids
