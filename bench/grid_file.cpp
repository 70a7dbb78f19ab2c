#include "grid_file.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "floors/ellipsoid.h"

namespace bench {

namespace {

constexpr double SouthDegrees = 40;
constexpr double WestDegrees = -10;
constexpr double StepDegrees = 300 / 3600.0;
constexpr double RadiansPerDegree = Pi / 180;

float Undulation(int row, int column) {
  return static_cast<float>(45 + 4 * std::sin(row / 17.0) + 3 * std::cos(column / 23.0));
}

// Arc seconds of latitude (0) and longitude (1). It changes so slowly that the datum of the position hardly matters.
float Shift(int row, int column, int value) {
  const double wave = std::sin(row / 40.0 + value) * std::cos(column / 60.0);
  return static_cast<float>((value == 0 ? 3.5 : -4.7) + 0.02 * wave);
}

template <typename T>
void Put(std::string& bytes, T value) {
  std::array<char, sizeof value> raw;
  std::memcpy(raw.data(), &value, sizeof value);
  bytes.append(raw.data(), raw.size());
}

template <typename T>
void PutBigEndian(std::string& bytes, T value) {
  Put(bytes, value);
  std::reverse(bytes.end() - sizeof value, bytes.end());
}

std::string Write(const std::string& name, const std::string& bytes) {
  const std::string path = Folder().File(name);
  if (!std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()))) {
    throw std::runtime_error(path + " cannot be written");
  }
  return path;
}

// A record is an unused word and the nodes from west to east; the first record contains the header.
template <typename Node>
GridFile WriteGrid(const std::string& name, int depth, Node node) {
  std::string bytes(56, ' ');
  bytes += "TIDEWRAK";
  Put<std::int32_t>(bytes, GridFile::columns);
  Put<std::int32_t>(bytes, GridFile::rows);
  Put<std::int32_t>(bytes, depth);
  Put(bytes, static_cast<float>(WestDegrees));
  Put(bytes, static_cast<float>(StepDegrees));
  Put(bytes, static_cast<float>(SouthDegrees));
  Put(bytes, static_cast<float>(StepDegrees));
  bytes.resize(static_cast<std::size_t>(GridFile::columns * depth) * 4 + 4, '\0');
  for (int row = 0; row < GridFile::rows; ++row) {
    Put<std::int32_t>(bytes, row);
    for (int column = 0; column < GridFile::columns; ++column) {
      for (int value = 0; value < depth; ++value) {
        Put(bytes, node(row, column, value));
      }
    }
  }
  return {Write(name, bytes), depth};
}

}  // namespace

TemporaryFolder::TemporaryFolder() {
  std::string path = (std::filesystem::temp_directory_path() / "latigo-bench-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) {
    throw std::runtime_error("no temporary folder");
  }
  path_ = path;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

const TemporaryFolder& Folder() {
  static const TemporaryFolder folder;
  return folder;
}

double GridFile::South() {
  return SouthDegrees * RadiansPerDegree;
}
double GridFile::West() {
  return WestDegrees * RadiansPerDegree;
}
double GridFile::Step() {
  return StepDegrees * RadiansPerDegree;
}

GridFile WriteGeoidGrid() {
  return WriteGrid("geoid.grd", 1, [](int row, int column, int) { return Undulation(row, column); });
}

std::string WriteGeoidGridForProj() {
  std::string bytes;
  PutBigEndian(bytes, SouthDegrees);
  PutBigEndian(bytes, WestDegrees);
  PutBigEndian(bytes, StepDegrees);
  PutBigEndian(bytes, StepDegrees);
  PutBigEndian<std::int32_t>(bytes, GridFile::rows);
  PutBigEndian<std::int32_t>(bytes, GridFile::columns);
  for (int row = 0; row < GridFile::rows; ++row) {
    for (int column = 0; column < GridFile::columns; ++column) {
      PutBigEndian(bytes, Undulation(row, column));
    }
  }
  return Write("geoid.gtx", bytes);
}

GridFile WriteDatumGrid() {
  return WriteGrid("datum.grd", 2, Shift);
}

std::string WriteDatumGridForProj() {
  std::string bytes = "CTABLE V2.0     ";
  bytes.resize(96, '\0');
  Put(bytes, GridFile::West());
  Put(bytes, GridFile::South());
  Put(bytes, GridFile::Step());
  Put(bytes, GridFile::Step());
  Put<std::int32_t>(bytes, GridFile::columns);
  Put<std::int32_t>(bytes, GridFile::rows);
  bytes.resize(160, '\0');
  for (int row = 0; row < GridFile::rows; ++row) {
    for (int column = 0; column < GridFile::columns; ++column) {
      // Longitude first, and positive to the west.
      Put(bytes, static_cast<float>(-Shift(row, column, 1) / 3600 * RadiansPerDegree));
      Put(bytes, static_cast<float>(Shift(row, column, 0) / 3600 * RadiansPerDegree));
    }
  }
  return Write("datum.ct2", bytes);
}

}  // namespace bench
