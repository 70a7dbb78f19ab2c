// Oblique stereographic on the ellipsoid, as a double projection: conformally onto the sphere of Gauss, then
// stereographically about the conformal latitude of the origin. (IOGP Guidance Note 7-2, oblique stereographic; the
// Dutch grid is the classical case.)
//
// Reads RefLatitude and CentralMeridian (the origin), ScaleFactor and the false origin. Unit is not read: coordinates
// and false origin are metres. Domain: positions within a quarter turn of longitude of the origin come back; beyond it
// and at the far pole the outputs are wrong or no numbers, with code 0. Accuracy: forward and inverse close to better
// than 1e-11 radians within 20 degrees of latitude and 40 of longitude. Failures: none.
#pragma once

#include "projection/conformal_sphere.h"
#include "projection/projection.h"

namespace latigo {

class Stereographic : public Projection {
 public:
  explicit Stereographic(const GeodesyParams& params);

  const char* Code() const override { return "OST"; }
  std::int32_t Kind() const override { return 4; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override;

 private:
  const ConformalSphere Sphere;
  const double N;      // n: exponent of the conformal mapping
  const double C;      // c: constant of the conformal mapping
  const double LonN;   // n lambda0, radians
  const double TwoRK;  // 2 R k0, metres
  const double TwoR;   // 2 R, metres
};

}  // namespace latigo
