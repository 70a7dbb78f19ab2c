// One function for each family of formats; each reads a whole file and knows its traps.
#pragma once

#include <string>

#include "raster.h"

namespace latigo::grids {

// GTX, BYN, NGS geoid files and Arc/Info ASCII: one band of undulations.
Field ReadGeoidRaster(const std::string& path, GDALDataset& dataset, const SourceOptions& options);

// ISG, versions 1 and 2: text with a header that names unit, order, and degrees or degrees, minutes and seconds.
Field ReadIsg(const std::string& path, const SourceOptions& options);

// NTv2: sub-grids with shifts in latitude and longitude; longitudes and their shifts are positive to the west.
Field ReadNtv2(GDALDataset& dataset, const SourceOptions& options);

// NADCON: a file of latitude shifts (.las) and one of longitude shifts (.los), positive to the west.
Field ReadNadcon(const std::string& path, const SourceOptions& options);

// Geodetic TIFF: bands with a description, a unit and perhaps a positive direction; a directory for each sub-grid.
Field ReadGeoTiff(GDALDataset& dataset, const SourceOptions& options);

// EGM as PGM: 16-bit numbers all around the earth, whose offset and scale stand in the header's comments.
Field ReadPgm(const std::string& path, const SourceOptions& options);

// Lines of latitude, longitude and one to three values, in any order, separated by blanks, commas or semicolons.
Field ReadText(const std::string& path, const SourceOptions& options);

// Names the layers that there are, if none has the name that was asked for.
void RequireLayers(const Field& field, const SourceOptions& options, const std::string& names);

}  // namespace latigo::grids
