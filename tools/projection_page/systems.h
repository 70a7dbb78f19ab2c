// The coordinate systems of docs/projections.md: a real one for each kind.
#pragma once

#include <latigo/latigo.h>

#include <array>

#include "../picture/measures.h"

namespace latigo::page {

using picture::Area;
using picture::Position;

// What distances are measured from: a meridian, at all latitudes of the area; a parallel, at all longitudes; or a
// point.
enum class From { Meridian, Parallel, Point };

struct System {
  const char* projection;
  const char* name;
  GeodesyParams params;  // its angles are degrees
  Area area;             // of the picture
  From from;
  Position origin;  // of distances
  const char* originInWords;
};

extern const std::array<System, 12> Systems;

}  // namespace latigo::page
