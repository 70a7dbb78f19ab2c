// Rasters of GDAL, and of formats read here, as layers of a field.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "field.h"

class GDALDataset;

namespace latigo::grids {

struct SourceOptions {
  std::string subGrid;           // the name of the only layer to be used; empty for all
  std::optional<Area> area;      // rows beyond it are not read
  std::optional<double> noData;  // a value that stands for none, beside the one that the file names
  bool longitudeFirst = false;   // in text
  bool reverse = false;          // the file leads from WGS-84 to the object's datum
  bool fromWgs84 = false;        // shifts are for the way from WGS-84, whose positions the library does not iterate
  Interpolation interpolation = Interpolation::Bilinear;
};

// A lattice whose rows can be read from the north.
struct Raster {
  std::string name, parent;
  int cols = 0, rows = 0, depth = 1;
  double west = 0, north = 0, lonStep = 0, latStep = 0;  // degrees, of nodes
  // Writes cols x depth values of a row, 0 the northernmost; NaN for no value.
  std::function<void(int row, float* values)> read;
};

// Checks the lattice and reads it, as far as it lies in the area.
Layer Load(const Raster& raster, const SourceOptions& options);

struct CloseDataset {
  void operator()(GDALDataset* dataset) const;
};
using Dataset = std::unique_ptr<GDALDataset, CloseDataset>;

// Opens a file with those drivers that read grids; null if none knows it.
Dataset OpenDataset(const std::string& name);

// A band, counted from 1, and the factor to our unit and sign.
struct Band {
  int number;
  double factor;
};

// Nodes are the centres of pixels, whatever the file says that a pixel is.
Raster RasterOf(GDALDataset& dataset, const std::vector<Band>& bands, const SourceOptions& options);

// The factor from a unit to metres, or to arc seconds; refuses an unknown unit. An empty text is the unit itself.
double ToMetres(std::string unit);
double ToArcSeconds(std::string unit);

// A step or an origin that is whole arc seconds but for rounding.
double Snapped(double degrees);

// The values of a file of the object's datum; the finest layers first.
void AddLayer(Field& field, const Raster& raster, const SourceOptions& options);

}  // namespace latigo::grids
