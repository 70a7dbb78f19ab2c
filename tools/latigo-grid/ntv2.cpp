#include <gdal_priv.h>

#include <cmath>
#include <cstdlib>

#include "formats.h"

namespace latigo::grids {

namespace {

std::string Item(GDALDataset& dataset, const char* name) {
  const char* const value = dataset.GetMetadataItem(name);
  return value != nullptr ? value : "";
}

// An axis pair of the header.
Ellipsoid EllipsoidOf(GDALDataset& dataset, const char* major, const char* minor) {
  const double a = std::atof(Item(dataset, major).c_str()), b = std::atof(Item(dataset, minor).c_str());
  return a > 6e6 && a < 7e6 && b > 6e6 && b < a ? Ellipsoid{a, a / (a - b)} : Ellipsoid{0, 0};
}

bool LikeWgs84(const Ellipsoid& ellipsoid) {
  return std::fabs(ellipsoid.a - Ellipsoid{}.a) < 0.5;
}

}  // namespace

Field ReadNtv2(GDALDataset& dataset, const SourceOptions& options) {
  Field field;
  field.format = "NTv2", field.kind = Kind::Shift;
  if (const std::string unit = Item(dataset, "GS_TYPE"); unit.rfind("SECONDS", 0) != 0) {
    throw Refused("an NTv2 file in " + unit + "; only SECONDS is read");
  }
  field.from = Item(dataset, "SYSTEM_F"), field.to = Item(dataset, "SYSTEM_T");
  for (auto [name, other] : {std::pair{&field.from, "DATUM_F"}, std::pair{&field.to, "DATUM_T"}}) {
    *name = name->empty() ? Item(dataset, other) : *name;
  }
  const Ellipsoid from = EllipsoidOf(dataset, "MAJOR_F", "MINOR_F"), to = EllipsoidOf(dataset, "MAJOR_T", "MINOR_T");
  field.inverted = options.reverse || (LikeWgs84(from) && to.a > 0 && !LikeWgs84(to));
  const Ellipsoid& own = field.inverted ? to : from;
  if (own.a > 0) {
    field.ellipsoid = own, field.knowsEllipsoid = true;
  }
  if (field.inverted) {
    field.notes.emplace_back("the file leads from WGS-84 to " + field.to + "; the shift is inverted");
  } else if (to.a > 0 && !LikeWgs84(to)) {
    field.notes.emplace_back("the file leads to " + field.to +
                             ", whose ellipsoid is not that of WGS-84: latitudes and longitudes are right, and heights "
                             "are not converted between the ellipsoids");
  }
  std::string names;
  const char* const* const list = dataset.GetMetadata("SUBDATASETS");
  for (int i = 0;; ++i) {
    const char* const name = CSLFetchNameValue(list, ("SUBDATASET_" + std::to_string(i) + "_NAME").c_str());
    if (name == nullptr) {
      break;
    }
    const Dataset layer = OpenDataset(name);
    if (layer == nullptr || layer->GetRasterCount() < 2) {
      throw Refused("sub-grid " + std::to_string(i + 1) + " cannot be read");
    }
    Raster raster = RasterOf(*layer, {{1, 1.0}, {2, -1.0}}, options);
    raster.name = Item(*layer, "SUB_NAME"), raster.parent = Item(*layer, "PARENT");
    names += (names.empty() ? "" : ", ") + raster.name;
    AddLayer(field, raster, options);
  }
  RequireLayers(field, options, names);
  return field;
}

}  // namespace latigo::grids
