#pragma once

#include "floors/ellipsoid.h"

namespace bench {

class MercatorFloor : FloorEllipsoid {
 public:
  explicit MercatorFloor(const GeodesyParams& p)
      : FloorEllipsoid(p),
        m0(ParallelRatio(p.RefLatitude)),
        R(a * m0),
        lambda0(p.CentralMeridian),
        x0(p.FalseEasting),
        y0(p.FalseNorthing) {}

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const double s = std::sin(phi);
    const double es = e * s;
    x = OverPi(lambda - lambda0) * R + x0;
    y = R * (0.5 * std::log((1 + s) / (1 - s)) - halfE * std::log1p(2 * es / (1 - es))) + y0;
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    const double t = std::exp(-std::fabs(y - y0) * invR);
    phi = std::copysign(HalfPi - 2 * std::atan(HalfAngle(t, 5e-11)), y - y0);
    lambda = OverPi((x - x0) * invR + lambda0);
  }

  double Scale(double /*x*/, double y) const {
    return m0 * InvParallelRatio(HalfAngle(std::exp(-std::fabs(y - y0) * invR), 5e-11));
  }

 private:
  const double m0, R, lambda0, x0, y0;
  const double invR = 1 / R;
};

// Mercator on the sphere.
class SMercFloor {
 public:
  explicit SMercFloor(const GeodesyParams&) {}

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const double s = std::sin(phi);
    x = lambda * R;
    y = R / 2 * std::log((1 + s) / (1 - s));
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    lambda = x * (1 / R);
    phi = std::copysign(HalfPi - 2 * std::atan(std::exp(std::fabs(y) * (-1 / R))), y);
  }

  double Scale(double, double) const { return 1; }

 private:
  static constexpr double R = 6378388.0;
};

}  // namespace bench
