#include "source.h"

#include <cpl_error.h>
#include <gdal_priv.h>

#include <algorithm>
#include <fstream>
#include <string_view>

#include "formats.h"

namespace latigo::grids {

namespace {

Field Read(const std::string& path, const SourceOptions& options) {
  char begin[4096] = {};  // an ISG file may begin with remarks
  std::ifstream file(path, std::ios::binary);
  file.read(begin, sizeof begin);
  const std::string_view bytes(begin, static_cast<std::size_t>(file.gcount()));
  if (bytes.empty()) {
    throw Refused("cannot be read");
  }
  if (bytes.rfind("P5", 0) == 0) {
    return ReadPgm(path, options);
  }
  if (bytes.find("begin_of_head") != std::string_view::npos) {
    return ReadIsg(path, options);
  }
  const Dataset dataset = OpenDataset(path);
  if (dataset == nullptr) {
    const auto isText = [](char c) { return c == '\t' || c == '\n' || c == '\r' || (c >= ' ' && c <= '~'); };
    const std::string why = CPLGetLastErrorMsg();  // of a driver that knows the format
    if (!why.empty() || !std::all_of(bytes.begin(), bytes.end(), isText)) {
      throw Refused("no grid format that is known here" + (why.empty() ? "" : ": " + why));
    }
    return ReadText(path, options);
  }
  const std::string driver = dataset->GetDriverName();
  if (driver == "NTv2") {
    return ReadNtv2(*dataset, options);
  }
  if (driver == "LOSLAS") {
    return ReadNadcon(path, options);
  }
  return driver == "GTiff" ? ReadGeoTiff(*dataset, options) : ReadGeoidRaster(path, *dataset, options);
}

}  // namespace

void RequireLayers(const Field& field, const SourceOptions& options, const std::string& names) {
  if (field.layers.empty()) {
    throw Refused("no sub-grid " + options.subGrid + (names.empty() ? "; it has none" : "; it has " + names));
  }
}

Field OpenSource(const std::string& path, const SourceOptions& options) {
  try {
    Field field = Read(path, options);
    RequireLayers(field, options, "");
    field.interpolation = options.interpolation;
    field.inverted = field.inverted || options.reverse;
    field.atWgs84 = options.fromWgs84;
    return field;
  } catch (const Refused& why) {
    throw Refused(path + ": " + why.what());
  } catch (const std::bad_alloc&) {
    throw Refused(path + ": does not fit in memory");
  }
}

}  // namespace latigo::grids
