// Mercator on the ellipsoid, true to scale on a reference latitude. Snyder, USGS PP 1395, chapter 7, (7-6) to (7-12),
// with the semi-major axis replaced by the radius of the reference parallel.
//
// Reads RefLatitude (the latitude of true scale), CentralMeridian, Unit and the false origin; northings are measured
// from the equator. ScaleFactor is not read.
// Domain: all latitudes except the poles; longitude differences are wrapped to -180 to 180 degrees.
// Accuracy: forward exact to rounding; the inverse stops when an iteration changes the latitude by at most 5e-11
// radians (0.3 mm), and the remaining error is smaller by the factor e^2: 0.003 mm.
// Failures: 7 from the constructor, 6 from GeoXY.
#pragma once

#include "projection/projection.h"

namespace latigo {

class Mercator : public Projection {
 public:
  explicit Mercator(const GeodesyParams& params);

  const char* Code() const override { return CodeOf<Mercator>; }
  std::int32_t Kind() const override { return KindOf<Mercator>; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override;

 private:
  HalfComplement LatitudeOf(double y) const;

  const double Radius;     // R: radius of the reference parallel, grid units
  const double TrueScale;  // cos(phi0) / sqrt(1 - e2 sin^2(phi0))
};

}  // namespace latigo
