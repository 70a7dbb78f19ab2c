#include <gdal_priv.h>

#include <cmath>

#include "formats.h"

namespace latigo::grids {

namespace {

// The other file of the pair: the last letter but one is a or o, capital or not.
std::string Other(const std::string& path) {
  std::string other = path;
  char& letter = other.at(path.size() - 2);
  letter = letter == 'a' ? 'o' : letter == 'o' ? 'a' : letter == 'A' ? 'O' : 'A';
  return other;
}

// A step stands in the header in few digits, 0.01667 for a minute. It is taken for whole arc seconds where it is near
// them, and the lattice counts from its south-western node.
Layer ReadOne(GDALDataset& dataset, double sign, const SourceOptions& options) {
  Raster raster = RasterOf(dataset, {{1, sign}}, options);
  const double south = raster.north - raster.latStep * (raster.rows - 1);
  for (double* step : {&raster.latStep, &raster.lonStep}) {
    constexpr double Digits = 0.01;  // of the step; 0.0083 for half a minute
    const double seconds = *step * 3600, whole = std::round(seconds);
    *step = std::fabs(seconds - whole) < Digits * whole ? whole / 3600 : *step;
  }
  raster.north = south + raster.latStep * (raster.rows - 1);
  return Load(raster, options);
}

bool Same(const Axis& one, const Axis& other) {
  return one.start == other.start && one.step == other.step && one.nodes == other.nodes;
}

}  // namespace

Field ReadNadcon(const std::string& path, const SourceOptions& options) {
  const bool isLatitude = path.find_last_of("aA") == path.size() - 2;
  const std::string las = isLatitude ? path : Other(path), los = isLatitude ? Other(path) : path;
  const Dataset latitude = OpenDataset(las), longitude = OpenDataset(los);
  if (latitude == nullptr || longitude == nullptr) {
    throw Refused("the other file of the pair, " + Other(path) + ", cannot be read");
  }
  Field field;
  field.format = "NADCON", field.kind = Kind::Shift, field.from = "NAD27", field.to = "NAD83";
  field.ellipsoid = {6378206.4, 294.978698214};  // Clarke 1866
  Layer layer = ReadOne(*latitude, 1, options);
  const Layer east = ReadOne(*longitude, -1, options);
  if (!Same(layer.latitude, east.latitude) || !Same(layer.longitude, east.longitude)) {
    throw Refused("the lattice of " + Other(path) + " is another");
  }
  layer.depth = 2;
  std::vector<float> both;
  both.reserve(layer.values.size() * 2);
  for (std::size_t i = 0; i < layer.values.size(); ++i) {
    both.push_back(layer.values[i]);
    both.push_back(east.values[i]);
  }
  layer.values = std::move(both);
  if (options.subGrid.empty()) {
    field.layers.push_back(std::move(layer));
  }
  return field;
}

}  // namespace latigo::grids
