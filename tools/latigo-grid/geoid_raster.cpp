#include <gdal_priv.h>

#include <algorithm>
#include <fstream>

#include "formats.h"

namespace latigo::grids {

namespace {

// The unit that the header of an ISG file names.
std::string IsgUnit(const std::string& path) {
  std::ifstream file(path);
  for (std::string line; std::getline(file, line) && line.find("end_of_head") == std::string::npos;) {
    std::transform(line.begin(), line.end(), line.begin(), [](unsigned char c) { return std::tolower(c); });
    const std::size_t mark = line.find_first_of(":=");
    if (mark != std::string::npos && (line.rfind("units", 0) == 0 || line.rfind("data units", 0) == 0)) {
      const std::size_t first = line.find_first_not_of(" \t", mark + 1), last = line.find_last_not_of(" \t\r");
      return first == std::string::npos ? "" : line.substr(first, last - first + 1);
    }
  }
  return "";
}

}  // namespace

Field ReadGeoidRaster(GDALDataset& dataset, const std::string& path, const SourceOptions& options) {
  Field field;
  field.format = dataset.GetDriverName();
  if (dataset.GetRasterCount() != 1) {
    throw Refused("a geoid has one band, and this file has " + std::to_string(dataset.GetRasterCount()));
  }
  const std::string unit = field.format == "ISG" ? IsgUnit(path) : dataset.GetRasterBand(1)->GetUnitType();
  AddLayer(field, RasterOf(dataset, {{1, ToMetres(unit)}}, options), options);
  return field;
}

}  // namespace latigo::grids
