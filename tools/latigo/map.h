// The area of a map.
#pragma once

#include <string>
#include <vector>

#include "../picture/graticule.h"
#include "commands.h"
#include "config_check.h"
#include "converter.h"

namespace latigo::cli {

struct MapArea {
  picture::Area limits;
  std::string source;  // where it is from, in words
};

// The area that is asked for; else that around the points; else that of the section's comment "Area:"; else that of its
// grid file; else one around the origin of the projection. Throws UsageError for one that is none.
MapArea AreaOf(const MapOptions& options, const ConfigFile& config, const Converter& converter,
               const std::vector<picture::NamedPoint>& points);

}  // namespace latigo::cli
