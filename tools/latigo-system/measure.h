// How far the library is from PROJ with a section.
#pragma once

#include <latigo/latigo.hpp>
#include <string>

#include "crs.h"
#include "section.h"

namespace latigo::system {

// The largest distances on the ground or map, metres.
struct Difference {
  double forward = 0;
  double inverse = 0;
  int points = 0;
  int failures = 0;  // of the points, in the library
  int unknown = 0;   // points that PROJ does not convert
  int turned = 0;    // points that convert only with a longitude beyond 180 degrees

  // "0.02 mm forward, 0.3 mm inverse, at 200 random points"
  std::string Sentence() const;
};

// "0.02 mm", "1.3 m": two digits
std::string Length(double metres);

// The projection, at random points of the area of use: the same ones each time.
Difference MeasureProjection(const Database& database, const Crs& crs, const Section& section, int points);

// The datum shift, from the base of the system to WGS 84 (inverse) and from there (forward), with PROJ's operation.
Difference MeasureShift(const Database& database, const Crs& crs, const Section& section, PJ* operation, int points);

// The largest distance on the map between the library and a pipeline from WGS 84 to grid units, at random points within
// two degrees of a position (degrees); `unit` is metres per grid unit. Infinite if one of the points does not convert.
double MeasurePipeline(api::Geodesy& ours, PJ* pipeline, double latitude, double longitude, double unit);

}  // namespace latigo::system
