// Cassini-Soldner on the ellipsoid. Snyder, USGS PP 1395, chapter 13, (13-7) to (13-13), with the meridian arc of
// Ellipsoid and the footpoint latitude series of the transverse Mercator.
//
// Reads RefLatitude, CentralMeridian, Unit and the false origin. ScaleFactor is not read.
// Domain: a zone of a few degrees about the central meridian; longitudes are not wrapped, and nothing is refused.
// Accuracy: the round-trip error is 0.9 mm within 1 degree of the central meridian, 18 mm within 3 and 6 m within
// 10; on the meridian itself 0.84 mm.
// Failures: none. Scale always returns 1.
#pragma once

#include "projection/meridian_series.h"
#include "projection/projection.h"

namespace latigo {

class Cassini : public Projection {
 public:
  explicit Cassini(const GeodesyParams& params);

  const char* Code() const override { return CodeOf<Cassini>; }
  std::int32_t Kind() const override { return KindOf<Cassini>; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override { return UnitScale(x, y, k); }

 private:
  const ArcTerms Arc;             // the series of the meridian arc
  const double Arc0;              // M0: meridian arc from the equator to RefLatitude, grid units
  const double SecondEccSquared;  // e'2
  const double SemiMajor;         // a, grid units
  const double InvArcRadius;      // mu / M of (7-19), radians per grid unit
  const double InvOneMinusE2;     // 1 / (1 - e2)
  const FourTerms FootCoeffs;     // of sin 2 mu to sin 8 mu, (3-26)
};

}  // namespace latigo
