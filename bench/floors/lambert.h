#pragma once

#include "floors/ellipsoid.h"

namespace bench {

class LambertFloor : FloorEllipsoid {
 public:
  explicit LambertFloor(const GeodesyParams& p)
      : FloorEllipsoid(p),
        n(std::log(ParallelRatio(p.NorthParallel) / ParallelRatio(p.SouthParallel)) /
          (Isometric(std::sin(p.SouthParallel)) - Isometric(std::sin(p.NorthParallel)))),
        F(a * p.ScaleFactor * ParallelRatio(p.NorthParallel) * std::exp(n * Isometric(std::sin(p.NorthParallel))) / n),
        lambda0(p.CentralMeridian),
        x0(p.FalseEasting),
        y0(F * std::exp(-n * Isometric(std::sin(p.RefLatitude))) + p.FalseNorthing) {}

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const double rho = F * std::exp(-n * Isometric(std::sin(phi)));
    const SinCos theta((lambda - lambda0) * n);
    x = rho * theta.sin + x0;
    y = y0 - rho * theta.cos;
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    const double dx = x - x0;
    const double q = y0 - y;
    lambda = std::atan(dx / q) * invN + lambda0;
    const double t = std::exp(halfInvN * std::log((dx * dx + q * q) * invF2));
    phi = HalfPi - 2 * std::atan(HalfAngle(t, 1e-10));
  }

  double Scale(double x, double y) const {
    const double dx = x - x0;
    const double q = y0 - y;
    const double rho2 = dx * dx + q * q;
    const double t = std::exp(halfInvN * std::log(rho2 * invF2));
    const double u = HalfAnglePass(t, HalfAnglePass(t, HalfAnglePass(t, t)));
    return nOverA * std::sqrt(rho2) * InvParallelRatio(u);
  }

 private:
  const double n, F, lambda0, x0, y0;
  const double invN = 1 / n, halfInvN = 0.5 / n, invF2 = 1 / (F * F), nOverA = std::fabs(n) / a;
};

}  // namespace bench
