// Lambert conformal conic on the ellipsoid, with one standard parallel or two. Snyder, USGS PP 1395, chapter 15, (15-7)
// to (15-11), with the equations of chapter 14 that all conics share.
//
// Reads NorthParallel and SouthParallel (in either order; equal values are the form with one parallel), RefLatitude,
// CentralMeridian, ScaleFactor, Unit and the false origin. ScaleFactor multiplies the radius in both forms.
// Domain: GeoXY accepts any position except the pole opposite to the apex, and does not wrap longitudes; XYGeo returns
// only cone angles within 90 degrees of the central meridian.
// Accuracy: forward exact to rounding; the inverse stops when an iteration changes the latitude by at most 1e-10
// radians (0.6 mm), and the remaining error is smaller by the factor e^2: 0.005 mm.
// Failures: 7 from the constructor, 6 from GeoXY, 11 from XYGeo.
//
// For a cone over the south pole the constants n, F, rho0 and the radius of a point are all negative.
#pragma once

#include "projection/projection.h"

namespace latigo {

class Lambert : public Projection {
 public:
  explicit Lambert(const GeodesyParams& params);

  const char* Code() const override { return CodeOf<Lambert>; }
  std::int32_t Kind() const override { return KindOf<Lambert>; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override;

 private:
  double MakeConeConstant() const;
  double MakeConeRadius() const;
  // (15-7), as F exp(-n psi), since t = exp(-psi).
  double ParallelRadius(double psi) const { return ConeRadius * std::exp(-ConeConstant * psi); }
  // rho (14-10) of a grid point dx east and dy south of the apex, with the sign of n; and t (15-11), as
  // exp(ln(rho / F) / n).
  double PointRadius(double dx, double dy) const;
  double PointT(double rho) const { return std::exp(InvCone * std::log(rho / ConeRadius)); }

  const double ConeConstant;  // n
  const double ConeRadius;    // F, multiplied by a k0, grid units
  const double OriginRadius;  // rho0: radius of the parallel of RefLatitude, grid units
  const double SemiMajor;     // a, grid units
  const double InvCone;       // 1/n
};

}  // namespace latigo
