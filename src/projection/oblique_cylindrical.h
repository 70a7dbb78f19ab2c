// Oblique cylindrical: conformal mapping to Gauss's sphere, then Mercator about the great circle through the origin at
// right angles to its meridian. Rosenmund's formulas for the Swiss grid (1903), as published by Swisstopo.
//
// Reads RefLatitude and CentralMeridian (the origin), ScaleFactor, Unit and the false origin.
// Domain: GeoXY accepts any position; XYGeo returns positions within 90 degrees of the origin, in longitude and in the
// oblique system.
// Accuracy: forward exact to rounding; the inverse stops when an iteration changes the latitude by at most 1e-7 radians
// (0.6 m), and the remaining error is smaller by the factor e^2: 4 mm.
// Failures: none. Scale always returns 1.
#pragma once

#include "projection/conformal_sphere.h"
#include "projection/projection.h"

namespace latigo {

class ObliqueCylindrical : public Projection {
 public:
  explicit ObliqueCylindrical(const GeodesyParams& params);

  const char* Code() const override { return CodeOf<ObliqueCylindrical>; }
  std::int32_t Kind() const override { return KindOf<ObliqueCylindrical>; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override { return UnitScale(x, y, k); }

 private:
  const ConformalSphere Sphere;
  const double Alpha;   // exponent of the mapping onto the sphere
  const double KConst;  // K: additive constant of that mapping
  const double Radius;  // R, scale factor included, grid units
  const double Start;   // tan(pi/4 - phi0/2): the iteration for the latitude starts at RefLatitude
};

}  // namespace latigo
