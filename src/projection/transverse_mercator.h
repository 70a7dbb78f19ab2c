// Transverse Mercator on the ellipsoid: Gauss-Krueger by Redfearn's series in the longitude difference (up to the
// seventh power in x, the sixth in y), with meridian arc and footpoint latitude as series in the third flattening n.
//
// Redfearn, "Transverse Mercator formulae", Empire Survey Review 69 (1948). The equation numbers in the source are
// those of Snyder, USGS PP 1395, chapter 8; a line whose terms are Redfearn's instead says so.
// Reads ScaleFactor, CentralMeridian, RefLatitude, Unit and the false origin.
// Domain: GeoXY accepts any position except the north pole; XYGeo accepts grid coordinates whose footpoint latitude is
// between the poles.
// Accuracy: the truncated series define the projection. The round-trip error is at most 0.043 mm within 2 degrees of
// the central meridian, 0.74 mm within 3, 27 mm within 5 and 3.6 m within 10; at 30 degrees it is kilometres.
// Failures: 7 from the constructor, 6 from GeoXY, 10 from XYGeo and Scale.
#pragma once

#include "projection/meridian_series.h"
#include "projection/projection.h"

namespace latigo {

class TransverseMercator : public Projection {
 public:
  explicit TransverseMercator(const GeodesyParams& params);

  const char* Code() const override { return CodeOf<TransverseMercator>; }
  std::int32_t Kind() const override { return KindOf<TransverseMercator>; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override;

 private:
  // Coefficients of sin 2u, sin 4u, sin 6u, sin 8u to those of the polynomial in cos^2 u of Series.
  static FourTerms Fold(const FourTerms& multipleAngles);
  // u + sin u cos u (C0 + C1 cos^2 u + C2 cos^4 u + C3 cos^6 u)
  static double Series(const FourTerms& C, double u, const SinCos& of);

  // The footpoint latitude phi1 of a northing; false outside the domain.
  bool Footpoint(double y, double& phi1) const;

  const double ThirdFlattening;   // n
  const double EccSquared;        // e2, from f
  const double SecondEccSquared;  // e'2
  const double SemiMajor;         // a, grid units
  const double InvScaledMajor;    // 1 / (k0 a), per grid unit
  const double RectifyingRadius;  // G, grid units
  const double InvScaledRadius;   // 1 / (G k0)
  const double QuarterMeridian;   // from the equator to a pole, scale factor included, grid units
  const FourTerms FootCoeffs;     // D0 to D3
  const FourTerms ArcCoeffs;      // C0 to C3
  const double OriginArc;         // -k0 M(phi0), grid units
};

}  // namespace latigo
