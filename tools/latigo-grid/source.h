// Opens a public grid of any format that is known here.
#pragma once

#include <string>

#include "field.h"
#include "raster.h"

namespace latigo::grids {

// Refuses what cannot be read, or has no value at all, by the file's name and the reason.
Field OpenSource(const std::string& path, const SourceOptions& options);

}  // namespace latigo::grids
