#include <gdal_priv.h>
#include <ogr_spatialref.h>

#include <cmath>

#include "formats.h"

namespace latigo::grids {

namespace {

std::string Item(GDALMajorObject& object, const char* name) {
  const char* const value = object.GetMetadataItem(name);
  return value != nullptr ? value : "";
}

// The band of that description, or the one at `fallback`, counted from 1, if no band has any.
int Find(GDALDataset& dataset, const std::string& description, int fallback) {
  bool described = false;
  for (int i = 1; i <= dataset.GetRasterCount(); ++i) {
    const std::string text = dataset.GetRasterBand(i)->GetDescription();
    if (text == description) {
      return i;
    }
    described = described || !text.empty();
  }
  if (described || fallback > dataset.GetRasterCount()) {
    throw Refused("no band " + description);
  }
  return fallback;
}

Band Angle(GDALDataset& dataset, const char* description, int fallback) {
  const int number = Find(dataset, description, fallback);
  GDALRasterBand& band = *dataset.GetRasterBand(number);
  return {number, ToArcSeconds(band.GetUnitType()) * (Item(band, "positive_value") == "west" ? -1 : 1)};
}

Band Length(GDALDataset& dataset, const char* description, int fallback, double sign) {
  const int number = Find(dataset, description, fallback);
  return {number, sign * ToMetres(dataset.GetRasterBand(number)->GetUnitType())};
}

std::vector<Band> BandsOf(GDALDataset& dataset, Field& field, std::string type) {
  const int count = dataset.GetRasterCount();
  type = !type.empty() ? type : count == 1 ? "VERTICAL_OFFSET_GEOGRAPHIC_TO_VERTICAL" : "";
  if (type == "VERTICAL_OFFSET_GEOGRAPHIC_TO_VERTICAL" || type == "VERTICAL_OFFSET_VERTICAL_TO_VERTICAL") {
    field.kind = Kind::Geoid;
    const char* const name =
        type.back() == 'L' && type.find("GEOGRAPHIC") != std::string::npos ? "geoid_undulation" : "vertical_offset";
    return {count == 1 ? Band{1, ToMetres(dataset.GetRasterBand(1)->GetUnitType())} : Length(dataset, name, 1, 1)};
  }
  if (type == "HORIZONTAL_OFFSET" || type == "GEOGRAPHIC_3D_OFFSET") {
    field.kind = Kind::Shift;
    if (type == "GEOGRAPHIC_3D_OFFSET") {
      field.notes.emplace_back("its offsets of the ellipsoidal height are left out");
    }
    return {Angle(dataset, "latitude_offset", 1), Angle(dataset, "longitude_offset", 2)};
  }
  if (type == "GEOCENTRIC_TRANSLATION") {
    // The file leads from its source to its target, here WGS-84; ours leads from WGS-84.
    field.kind = Kind::Translation;
    return {Length(dataset, "x_translation", 1, -1), Length(dataset, "y_translation", 2, -1),
            Length(dataset, "z_translation", 3, -1)};
  }
  throw Refused(type.empty() ? "several bands, and no item TYPE that says what they are"
                             : "its TYPE " + type + " is none that a grid file can hold");
}

// The ellipsoid of the object's datum: that of the source's coordinate system, if the file names it; of the target's if
// the file leads from WGS-84.
void TakeEllipsoid(GDALDataset& dataset, bool reverse, Field& field) {
  OGRSpatialReference source;
  const std::string which = reverse ? "target" : "source";
  const std::string wkt = Item(dataset, (which + "_crs_wkt").c_str()),
                    code = Item(dataset, (which + "_crs_epsg_code").c_str());
  const bool named = (!wkt.empty() && source.SetFromUserInput(wkt.c_str()) == OGRERR_NONE) ||
                     (!code.empty() && source.importFromEPSG(std::atoi(code.c_str())) == OGRERR_NONE);
  const OGRSpatialReference* const system = named ? &source : dataset.GetSpatialRef();
  if (system == nullptr || ((reverse || field.kind == Kind::Translation) && !named)) {
    return;
  }
  OGRErr failure = OGRERR_NONE;
  const Ellipsoid found{system->GetSemiMajor(&failure), system->GetInvFlattening()};
  if (failure == OGRERR_NONE && found.a > 6e6 && found.a < 7e6 && found.invFlattening > 200) {
    field.ellipsoid = found, field.knowsEllipsoid = true;
    (reverse ? field.to : field.from) = system->GetName() != nullptr ? system->GetName() : "";
  }
}

}  // namespace

Field ReadGeoTiff(GDALDataset& dataset, const SourceOptions& options) {
  Field field;
  field.format = "GeoTIFF";
  const std::string type = Item(dataset, "TYPE");
  // Each directory of the file is a sub-grid; a file of one has no list of them.
  std::vector<std::string> names;
  const char* const* const list = dataset.GetMetadata("SUBDATASETS");
  for (int i = 1;; ++i) {
    const char* const name = CSLFetchNameValue(list, ("SUBDATASET_" + std::to_string(i) + "_NAME").c_str());
    if (name == nullptr) {
      break;
    }
    names.emplace_back(name);
  }
  std::string known;
  const auto add = [&](GDALDataset& layer) {
    Raster raster = RasterOf(layer, BandsOf(layer, field, type), options);
    raster.name = Item(layer, "grid_name"), raster.parent = Item(layer, "parent_grid_name");
    known += (known.empty() || raster.name.empty() ? "" : ", ") + raster.name;
    AddLayer(field, raster, options);
  };
  for (const std::string& name : names) {
    const Dataset layer = OpenDataset(name);
    if (layer == nullptr) {
      throw Refused(name + " cannot be read");
    }
    add(*layer);
  }
  if (names.empty()) {
    add(dataset);
  }
  if (const std::string method = Item(dataset, "interpolation_method"); !method.empty() && method != "bilinear") {
    field.notes.emplace_back("the file prescribes the interpolation " + method + ", which is not the one used here");
  }
  TakeEllipsoid(dataset, options.reverse, field);
  RequireLayers(field, options, known);
  return field;
}

}  // namespace latigo::grids
