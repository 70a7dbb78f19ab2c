// Azimuthal equidistant on the ellipsoid, in the series form for limited distances. Snyder, USGS PP 1395, chapter 25,
// (25-9) to (25-27), after Clarke.
//
// Reads RefLatitude and CentralMeridian (the origin), Unit and the false origin. ScaleFactor is not read.
// Domain: GeoXY accepts any position; XYGeo returns positions within 90 degrees of the origin, in distance and in
// longitude.
// Accuracy: that of the truncated series. The round-trip error is 0.003 mm within 1 degree of the origin, 8 mm within 5
// and 1.7 m within 15.
// Failures: none. Scale always returns 1.
//
// At 90 degrees from the origin the sine of the distance (forward) and of the longitude (inverse) is 1, where the arc
// sine turns one unit in the last place into 0.1 m. There a sine is set to 1 if the published form of the formula is 1.
//
// On the meridian opposite to the origin's, points are at their true distance over the pole, as on the central
// meridian.
#pragma once

#include "projection/projection.h"

namespace latigo {

class AzimuthEqDist : public Projection {
 public:
  explicit AzimuthEqDist(const GeodesyParams& params);

  const char* Code() const override { return CodeOf<AzimuthEqDist>; }
  std::int32_t Kind() const override { return KindOf<AzimuthEqDist>; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override { return UnitScale(x, y, k); }

 private:
  const double SinLat0, CosLat0;      // of the origin
  const double N0;                    // prime vertical radius at the origin, grid units
  const double SecondEcc;             // e / sqrt(1 - e2)
  const double G;                     // e sin(phi0) / sqrt(1 - e2)
  const double InvN0, InvOneMinusE2;  // 1 / N0, 1 / (1 - e2)
  const double AFactor, BFactor;      // -g cos^2(phi0) and 3 g sin(phi0) cos(phi0), g = e2 / (1 - e2)
  const double OriginTerm;            // e2 N0 sin(phi0) / a, with N0 in metres
  const bool NorthPole, SouthPole;    // the origin is that pole
};

}  // namespace latigo
