#include <cmath>
#include <cstdint>
#include <fstream>
#include <limits>
#include <memory>
#include <sstream>

#include "formats.h"

namespace latigo::grids {

namespace {

struct Header {
  int cols = 0, rows = 0, most = 0;
  double offset = std::numeric_limits<double>::quiet_NaN(), scale = offset;
  std::string latitude = "90N", longitude = "0E";  // of the first node
  std::streamoff data = 0;                         // where the numbers begin
};

Header ReadHeader(std::istream& file) {
  Header header;
  std::string line, word;
  std::getline(file, line);
  int* const fields[] = {&header.cols, &header.rows, &header.most};
  std::size_t next = 0;
  while (next < std::size(fields) && std::getline(file, line)) {
    std::istringstream words(line);
    if (line.rfind('#', 0) == 0) {
      words.ignore(1);
      words >> word;
      if (word == "Offset") {
        words >> header.offset;
      } else if (word == "Scale") {
        words >> header.scale;
      } else if (word == "Origin") {
        words >> header.latitude >> header.longitude;
      }
      continue;
    }
    while (next < std::size(fields) && words >> *fields[next]) {
      ++next;
    }
  }
  header.data = file.tellg();
  return header;
}

}  // namespace

Field ReadPgm(const std::string& path, const SourceOptions& options) {
  const auto file = std::make_shared<std::ifstream>(path, std::ios::binary);
  const Header header = ReadHeader(*file);
  if (!*file || header.cols < 2 || header.rows < 3 || header.rows % 2 == 0 || header.most != 65535) {
    throw Refused("not a geoid as PGM of 16 bits with an odd number of rows");
  }
  if (!std::isfinite(header.offset) || !std::isfinite(header.scale)) {
    throw Refused("its comments have no Offset and Scale");
  }
  if (header.latitude != "90N" || header.longitude != "0E") {
    throw Refused("its Origin is " + header.latitude + " " + header.longitude + ", and only 90N 0E is read");
  }
  file->seekg(0, std::ios::end);
  const std::streamoff wanted = std::streamoff{2} * header.cols * header.rows, there = file->tellg() - header.data;
  if (wanted != there) {
    throw Refused("has " + std::to_string(there) + " bytes of values instead of " + std::to_string(wanted));
  }
  Field field;
  field.format = "PGM";
  Raster raster;
  raster.cols = header.cols, raster.rows = header.rows;
  raster.west = 0, raster.north = 90, raster.lonStep = 360.0 / header.cols, raster.latStep = 180.0 / (header.rows - 1);
  raster.read = [file, header](int row, float* values) {
    std::vector<unsigned char> bytes(static_cast<std::size_t>(header.cols) * 2);
    file->seekg(header.data + std::streamoff{row} * header.cols * 2);
    if (!file->read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()))) {
      throw Refused("its rows cannot be read");
    }
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
      values[i / 2] = static_cast<float>(header.offset + header.scale * (bytes[i] * 256 + bytes[i + 1]));
    }
  };
  AddLayer(field, raster, options);
  return field;
}

}  // namespace latigo::grids
