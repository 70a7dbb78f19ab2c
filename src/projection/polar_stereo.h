// Polar stereographic on the ellipsoid, at either pole. Snyder, USGS PP 1395, chapter 21, (21-30) to (21-40), with the
// latitude from the series (3-5) in the conformal latitude, to its term in sin 8 chi.
//
// Reads RefLatitude, CentralMeridian, ScaleFactor and the false origin. The sign of RefLatitude selects the pole; 0 is
// north. If RefLatitude is a pole (within 1e-5 radians), ScaleFactor is the scale factor there. Otherwise RefLatitude
// is the latitude of true scale, and the resulting scale factor of the pole replaces ScaleFactor. Unit is not read:
// coordinates are metres. Domain: everything except the opposite pole. Accuracy: forward exact to rounding; the
// round-trip error is 0.002 mm within 30 degrees of the pole, 0.004 mm within 60 and 0.013 mm within 80. Failures:
// none.
//
// On the meridian opposite to CentralMeridian XYGeo returns a longitude 180 degrees from it, at the pole
// CentralMeridian itself.
#pragma once

#include "projection/projection.h"

namespace latigo {

class PolarStereo : public Projection {
 public:
  explicit PolarStereo(const GeodesyParams& params);

  const char* Code() const override { return CodeOf<PolarStereo>; }
  std::int32_t Kind() const override { return KindOf<PolarStereo>; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override;

 private:
  // The latitude at a grid distance from the pole, metres.
  double Latitude(double r) const;

  const double Side;       // 1 for the north pole, -1 for the south pole
  const double RhoFactor;  // grid radius per unit of t, metres
  const double InvRhoFactor;
  const FourTerms SinCoefs;  // of the series from conformal to geodetic latitude
};

}  // namespace latigo
