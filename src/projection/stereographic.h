// Oblique stereographic on the ellipsoid, as a double projection: conformal mapping to Gauss's sphere, then
// stereographic about the conformal latitude of the origin. IOGP Guidance Note 7-2, oblique stereographic; the Dutch
// grid is the best known example.
//
// Reads RefLatitude and CentralMeridian (the origin), ScaleFactor and the false origin. Unit is not read: coordinates
// and false origin are metres.
// Domain: GeoXY accepts any position; XYGeo returns positions within 90 degrees of longitude of the origin; outside, or
// at the far pole, wrong positions or NaN, with code 0.
// Accuracy: forward exact to rounding; the round-trip error is below 0.001 mm within 30 degrees of the origin.
// Failures: none. Scale returns the scale factor from the sphere to the plane.
#pragma once

#include "projection/conformal_sphere.h"
#include "projection/projection.h"

namespace latigo {

class Stereographic : public Projection {
 public:
  explicit Stereographic(const GeodesyParams& params);

  const char* Code() const override { return CodeOf<Stereographic>; }
  std::int32_t Kind() const override { return KindOf<Stereographic>; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override;

 private:
  // A point of the conformal sphere: its latitude, pi/4 + chi/2, and its longitude from the origin.
  struct OnSphere {
    double chi;
    SinCos h;
    double Lambda;
  };

  OnSphere PlaneToSphere(double x, double y) const;
  double SphereToEllipsoid(double chi, SinCos h) const;  // the latitude

  const ConformalSphere Sphere;
  const double N;         // n: exponent of the conformal mapping
  const double C;         // c: root of the Guidance Note's, whose w is tan^2(pi/4 + chi/2)
  const double LonN;      // n lambda0, radians
  const double InvN;      // 1 / n
  const double TwoRK;     // 2 R k0, metres
  const double InvTwoRK;  // 1 / 2 R k0
  const double TwoR;      // 2 R, metres
};

}  // namespace latigo
