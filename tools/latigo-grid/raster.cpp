#include "raster.h"

#include <cpl_conv.h>
#include <cpl_error.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <limits>
#include <map>

namespace latigo::grids {

namespace {

constexpr std::int64_t MaxValues = std::int64_t{1} << 30;  // in memory; 4 GiB
constexpr float None = std::numeric_limits<float>::quiet_NaN();
// Metres or arc seconds; beyond it a value marks that there is none. No undulation reaches 110 metres.
constexpr double MostPlausible(int depth) {
  return depth == 1 ? 500 : 5000;
}

// The columns or rows of an axis that an area needs, with two more nodes for the interpolation.
void Cut(int& first, int& last, int nodes, double from, double to) {
  first = std::max(first, static_cast<int>(std::clamp(std::floor(from) - 2, 0.0, nodes - 1.0)));
  last = std::min(last, static_cast<int>(std::clamp(std::ceil(to) + 2, 0.0, nodes - 1.0)));
}

double Factor(const std::map<std::string, double>& factors, std::string unit, const char* wanted) {
  std::transform(unit.begin(), unit.end(), unit.begin(), [](unsigned char c) { return std::tolower(c); });
  if (const auto found = factors.find(unit); found != factors.end()) {
    return found->second;
  }
  throw Refused("the values are in the unit \"" + unit + "\", which is none of " + wanted);
}

}  // namespace

double ToMetres(std::string unit) {
  static const std::map<std::string, double> factors = {{"", 1},
                                                        {"m", 1},
                                                        {"meter", 1},
                                                        {"meters", 1},
                                                        {"metre", 1},
                                                        {"metres", 1},
                                                        {"cm", 0.01},
                                                        {"mm", 0.001},
                                                        {"millimetre", 0.001},
                                                        {"centimetre", 0.01},
                                                        {"ft", 0.3048},
                                                        {"feet", 0.3048},
                                                        {"foot", 0.3048},
                                                        {"us survey foot", 1200.0 / 3937},
                                                        {"us-ft", 1200.0 / 3937}};
  return Factor(factors, std::move(unit), "metres, centimetres, millimetres, feet, US survey feet");
}

double ToArcSeconds(std::string unit) {
  static const std::map<std::string, double> factors = {
      {"", 1},        {"arc-second", 1}, {"arc second", 1}, {"arc seconds", 1},      {"arcsecond", 1},  {"second", 1},
      {"seconds", 1}, {"degree", 3600},  {"degrees", 3600}, {"radian", 648000 / Pi}, {"arc-minute", 60}};
  return Factor(factors, std::move(unit), "arc seconds, arc minutes, degrees, radians");
}

double Snapped(double degrees) {
  constexpr double Rounding = 2e-4;  // arc seconds
  const double seconds = degrees * 3600, whole = std::round(seconds);
  return std::fabs(seconds - whole) < Rounding && whole != 0 ? whole / 3600 : degrees;
}

Layer Load(const Raster& raster, const SourceOptions& options) {
  const auto positive = [](double step) { return step > 0 && std::isfinite(step); };
  if (raster.cols < 1 || raster.rows < 1 || !positive(raster.lonStep) || !positive(raster.latStep) ||
      !std::isfinite(raster.west) || std::fabs(raster.west) > 720) {
    throw Refused("no lattice of latitudes and longitudes");
  }
  Layer layer{raster.name, raster.parent, {}, {}, raster.depth, false, {}};
  double west = Snapped(raster.west), latStep = Snapped(raster.latStep), lonStep = Snapped(raster.lonStep);
  const double south = Snapped(raster.north - raster.latStep * (raster.rows - 1));
  constexpr double Slack = 1e-4;  // degrees
  if (!(south >= -90 - Slack && south + latStep * (raster.rows - 1) <= 90 + Slack)) {
    throw Refused("latitudes beyond the poles");
  }
  // All around: the first column follows the last, or stands there once more.
  const double around = lonStep * raster.cols - 360;
  int cols = raster.cols;
  if (std::fabs(around) < Slack || std::fabs(around - lonStep) < Slack) {
    layer.periodic = true;
    cols -= std::fabs(around) < Slack ? 0 : 1;
    lonStep = 360.0 / cols;
  } else if (around > lonStep) {
    throw Refused("more than 360 degrees of longitude");
  }
  if (!layer.periodic) {
    west = west >= 180 ? west - 360 : west < -180 ? west + 360 : west;
  }

  int firstRow = 0, lastRow = raster.rows - 1, firstCol = 0, lastCol = cols - 1;
  if (options.area) {
    const Area& area = *options.area;
    Cut(firstRow, lastRow, raster.rows, (area.south - south) / latStep, (area.north - south) / latStep);
    if (const double from = EastOf(west, area.west), width = area.east - area.west;
        !layer.periodic && from + width < 360) {
      Cut(firstCol, lastCol, cols, from / lonStep, (from + width) / lonStep);
    }
  }
  layer.latitude = {south + latStep * firstRow, latStep, std::max(lastRow - firstRow + 1, 1)};
  layer.longitude = {west + lonStep * firstCol, lonStep, std::max(lastCol - firstCol + 1, 1)};

  const std::int64_t count = std::int64_t{layer.latitude.nodes} * layer.longitude.nodes * layer.depth;
  const std::int64_t perRow = std::int64_t{raster.cols} * raster.depth;
  if (count > MaxValues || perRow > MaxValues) {
    throw Refused(std::to_string(count) + " values are more than fit in memory; ask for an --area");
  }
  // Row by row, so that a header that promises more than the file holds asks for no memory.
  std::vector<float> row(static_cast<std::size_t>(perRow));
  const auto width = static_cast<std::ptrdiff_t>(layer.longitude.nodes) * layer.depth;
  for (int r = firstRow; r < firstRow + layer.latitude.nodes; ++r) {
    raster.read(raster.rows - 1 - r, row.data());
    const auto from = row.begin() + static_cast<std::ptrdiff_t>(firstCol) * layer.depth;
    layer.values.insert(layer.values.end(), from, from + width);
  }
  for (float& value : layer.values) {
    value = std::isfinite(value) ? value : None;
    if (std::fabs(value) > MostPlausible(raster.depth)) {
      throw Refused("the value " + std::to_string(value) + " is none; if it marks nodes without a value, --nodata " +
                    std::to_string(value));
    }
  }
  return layer;
}

void CloseDataset::operator()(GDALDataset* dataset) const {
  GDALClose(dataset);
}

Dataset OpenDataset(const std::string& name) {
  static const bool ready = [] {
    CPLSetErrorHandler(CPLQuietErrorHandler);
    CPLSetConfigOption("GDAL_PAM_ENABLED", "NO");       // no file beside the grid changes what it says
    CPLSetConfigOption("GDAL_DRIVER_PATH", "disable");  // the drivers that are needed are no plugins
    GDALAllRegister();
    return true;
  }();
  static_cast<void>(ready);
  static const char* const drivers[] = {"GTX", "NTv2", "LOSLAS", "GTiff", "BYN", "NGSGEOID", "AAIGrid", nullptr};
  return Dataset(GDALDataset::Open(name.c_str(), GDAL_OF_RASTER | GDAL_OF_READONLY, drivers));
}

namespace {

// Refuses a raster on a map, or with angles in another unit or from another prime meridian.
void RequireDegrees(const GDALDataset& dataset) {
  const OGRSpatialReference* const system = dataset.GetSpatialRef();
  if (system == nullptr || system->IsEmpty() != 0 || system->IsLocal() != 0) {
    return;  // a TIFF without one has a local one here
  }
  constexpr double Slack = 1e-9;
  if (system->IsGeographic() == 0 || std::fabs(system->GetAngularUnits(nullptr) / Radians - 1) > Slack ||
      std::fabs(system->GetPrimeMeridian()) > Slack) {
    throw Refused(std::string("its system is ") +
                  (system->GetName() != nullptr ? system->GetName() : "not geographic") +
                  ", and not of latitudes and longitudes in degrees from Greenwich");
  }
}

}  // namespace

Raster RasterOf(GDALDataset& dataset, const std::vector<Band>& bands, const SourceOptions& options) {
  double t[6];
  if (dataset.GetGeoTransform(t) != CE_None || t[2] != 0 || t[4] != 0) {
    throw Refused("not north up, or without a place on earth");
  }
  RequireDegrees(dataset);
  const int rows = dataset.GetRasterYSize(), cols = dataset.GetRasterXSize();
  const bool fromSouth = t[5] > 0;
  const double firstRow = t[3] + t[5] / 2;
  Raster raster;
  raster.cols = cols, raster.rows = rows, raster.depth = static_cast<int>(bands.size());
  raster.west = t[0] + t[1] / 2, raster.lonStep = t[1];
  raster.latStep = std::fabs(t[5]), raster.north = fromSouth ? firstRow + t[5] * (rows - 1) : firstRow;
  raster.read = [&dataset, bands, rows, cols, fromSouth, options](int row, float* values) {
    std::vector<double> line(static_cast<std::size_t>(cols));
    const std::size_t depth = bands.size();
    for (std::size_t i = 0; i < depth; ++i) {
      GDALRasterBand& band = *dataset.GetRasterBand(bands[i].number);
      CPLErrorReset();
      const int y = fromSouth ? rows - 1 - row : row;
      if (band.RasterIO(GF_Read, 0, y, cols, 1, line.data(), cols, 1, GDT_Float64, 0, 0, nullptr) != CE_None) {
        throw Refused(std::string("its rows cannot be read: ") + CPLGetLastErrorMsg());
      }
      int hasNoData = 0;
      const double noData = band.GetNoDataValue(&hasNoData), scale = band.GetScale(), offset = band.GetOffset();
      for (std::size_t col = 0; col < line.size(); ++col) {
        const double stored = line[col];
        const bool none = std::isnan(stored) ||
                          (hasNoData != 0 && static_cast<float>(stored) == static_cast<float>(noData)) ||
                          (options.noData && static_cast<float>(stored) == static_cast<float>(*options.noData));
        values[col * depth + i] = none ? None : static_cast<float>((stored * scale + offset) * bands[i].factor);
      }
    }
  };
  return raster;
}

void AddLayer(Field& field, const Raster& raster, const SourceOptions& options) {
  if (!options.subGrid.empty() && options.subGrid != raster.name) {
    return;
  }
  Layer layer = Load(raster, options);
  const auto size = [](const Layer& of) { return of.latitude.step * of.longitude.step; };
  const auto at = std::find_if(field.layers.begin(), field.layers.end(),
                               [&](const Layer& other) { return size(other) > size(layer) * (1 + 1e-9); });
  field.layers.insert(at, std::move(layer));
}

}  // namespace latigo::grids
