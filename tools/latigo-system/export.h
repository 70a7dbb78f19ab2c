// From a section to PROJ strings and WKT2.
#pragma once

#include <string>

#include "database.h"

namespace latigo::system {

struct Exported {
  std::string pipeline;       // from latitude and longitude of WGS 84 in degrees to grid units
  std::string crs;            // a PROJ string of a system
  std::string wkt;            // WKT2:2019 of it
  std::string noCrs;          // the reason why there are no crs and wkt; empty if there are
  std::string approximation;  // how far PROJ's projection is another one; empty if it is the same
  double largestDifference =
      0;  // metres, from the library, at random points about the origin; forward through pipeline
};

// Throws Refused with the reason if PROJ cannot express the section.
Exported Export(const Database& database, const std::string& file, const std::string& section);

}  // namespace latigo::system
