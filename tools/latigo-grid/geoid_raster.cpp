#include <gdal_priv.h>

#include <cstdint>
#include <cstring>
#include <fstream>

#include "formats.h"

namespace latigo::grids {

namespace {

// Words of an Arc/Info file that are no keys of its header, nor their values.
std::int64_t ValuesOfText(std::istream& file) {
  std::int64_t count = 0;
  for (std::string word; file >> word;) {
    const bool key = std::strchr("ncxydNCXYD", word.front()) != nullptr && CPLStrtod(word.c_str(), nullptr) == 0;
    count += key ? -1 : 1;
  }
  return count;
}

// Refuses a file that has another number of values than its header says: every row but the first would be displaced.
void RequireSize(const std::string& path, const std::string& format, std::int64_t values) {
  std::ifstream file(path, std::ios::binary);
  bool fits = true;
  if (format == "AAIGrid") {
    fits = ValuesOfText(file) == values;
  } else if (format == "GTX" || format == "NGSGEOID") {
    const std::int64_t bytes = file.seekg(0, std::ios::end).tellg() - std::streamoff{format == "GTX" ? 40 : 44};
    const auto of = [&](int size) { return bytes % size == 0 && bytes / size == values; };
    fits = of(4) || (format == "GTX" && of(8));
  }
  if (!fits) {
    throw Refused("its size is not that of " + std::to_string(values) + " values, as its header says");
  }
}

}  // namespace

Field ReadGeoidRaster(const std::string& path, GDALDataset& dataset, const SourceOptions& options) {
  Field field;
  field.format = dataset.GetDriverName();
  if (dataset.GetRasterCount() != 1) {
    throw Refused("a geoid has one band, and this file has " + std::to_string(dataset.GetRasterCount()));
  }
  RequireSize(path, field.format, std::int64_t{dataset.GetRasterXSize()} * dataset.GetRasterYSize());
  const std::string unit = dataset.GetRasterBand(1)->GetUnitType();
  AddLayer(field, RasterOf(dataset, {{1, ToMetres(unit)}}, options), options);
  return field;
}

}  // namespace latigo::grids
