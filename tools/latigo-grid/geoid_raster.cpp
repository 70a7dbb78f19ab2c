#include <gdal_priv.h>

#include "formats.h"

namespace latigo::grids {

Field ReadGeoidRaster(GDALDataset& dataset, const SourceOptions& options) {
  Field field;
  field.format = dataset.GetDriverName();
  if (dataset.GetRasterCount() != 1) {
    throw Refused("a geoid has one band, and this file has " + std::to_string(dataset.GetRasterCount()));
  }
  const std::string unit = dataset.GetRasterBand(1)->GetUnitType();
  AddLayer(field, RasterOf(dataset, {{1, ToMetres(unit)}}, options), options);
  return field;
}

}  // namespace latigo::grids
