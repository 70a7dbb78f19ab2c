// Albers equal-area conic on the ellipsoid, with two standard parallels or one. Snyder, USGS PP 1395, chapter 14,
// (14-12) to (14-21).
//
// Reads NorthParallel and SouthParallel (in either order), RefLatitude, CentralMeridian, Unit and the false origin.
// ScaleFactor is not read: the cone and its scale follow from the parallels and the ellipsoid. With one parallel the
// cone constant is its sine.
// Domain: GeoXY accepts latitudes where the radius is real (elsewhere coordinates are NaN, with code 0); XYGeo returns
// cone angles within 90 degrees of the central meridian, and latitudes up to 89.92 degrees.
// Accuracy: forward exact to rounding; the round-trip error is below 0.001 mm up to 89 degrees of latitude.
// Failures: 7 from the constructor, 10 and 11 from XYGeo, 10 from Scale.
//
// Scale uses the starting latitude of the iteration and is not exactly 1 on a standard parallel.
#pragma once

#include "projection/projection.h"

namespace latigo {

class Albers : public Projection {
 public:
  explicit Albers(const GeodesyParams& params);

  const char* Code() const override { return CodeOf<Albers>; }
  std::int32_t Kind() const override { return KindOf<Albers>; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override;

 private:
  // L = ln((1 - e s) / (1 + e s)) / (2 e), and q (3-12) = (1 - e2) (s / (1 - e2 s^2) - L), of the sine s of a latitude.
  // With d = 1 / (1 - e2 s^2) the quotient in L is (1 - e s)^2 d: one division for both terms.
  double L(double s) const {
    const double es = e() * s;
    return InvTwoE * std::log((1 - es) / (1 + es));
  }
  double Q(double s) const {
    const double es = e() * s;
    const double d = 1 / ((1 - es) * (1 + es));
    return (1 - e2()) * (s * d - InvTwoE * std::log((1 - es) * (1 - es) * d));
  }
  // rho (14-12) = a sqrt(C - n q) / n, grid units.
  double Radius(double q) const { return MajorOverCone * std::sqrt(ConeRoot - ConeConstant * q); }
  // For the inverse: the square of that root, (rho n / a)^2; and q (14-19).
  double RootSquared(double dx, double dy) const { return (dx * dx + dy * dy) * InvMajorOverCone2; }
  double QOfRoot(double root2) const { return (ConeRoot - root2) * InvCone; }
  double MakeConeConstant() const;

  const double InvTwoE;            // 1 / (2 e)
  const double SemiMajor;          // a, grid units
  const double ConeConstant;       // n, negative for a southern cone
  const double InvCone;            // 1/n
  const double MajorOverCone;      // a/n, grid units
  const double InvMajorOverCone2;  // (n/a)^2
  const double ConeRoot;           // C (14-13)
  const double OriginRadius;       // rho0 (14-12a), grid units, with the sign of n
};

}  // namespace latigo
