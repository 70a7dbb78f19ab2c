#pragma once

#include "floors/ellipsoid.h"

namespace bench {

class AlbersFloor : FloorEllipsoid {
 public:
  explicit AlbersFloor(const GeodesyParams& p)
      : FloorEllipsoid(p),
        s1(std::sin(p.NorthParallel)),
        m1(ParallelRatio(p.NorthParallel)),
        m2(ParallelRatio(p.SouthParallel)),
        n((m1 * m1 - m2 * m2) / (Q(std::sin(p.SouthParallel)) - Q(s1))),
        C(m1 * m1 + n * Q(s1)),
        lambda0(p.CentralMeridian),
        x0(p.FalseEasting),
        y0(Radius(Q(std::sin(p.RefLatitude))) + p.FalseNorthing) {}

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const SinCos theta(n * (lambda - lambda0));
    const double rho = Radius(Q(std::sin(phi)));
    x = rho * theta.sin + x0;
    y = y0 - rho * theta.cos;
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    const double dx = x - x0;
    const double dy = y0 - y;
    lambda = std::atan(dx / dy) * invN + lambda0;
    const double q = (C - (dx * dx + dy * dy) * ratio2) * invN;
    const double qScaled = q * invOneMinusE2;
    double s = q / 2;
    double c = std::sqrt(1 - s * s);
    double latitude = std::asin(s);
    for (;;) {
      const double es = e * s;
      const double W = 1 - es * es;
      // L + q / (1 - e2), multiplied by W with the rest
      const double change = W * ((qScaled + log2e * std::log((1 - es) / (1 + es))) * W - s) / (2 * c);
      latitude += change;
      if (!(std::fabs(change) > 1e-7)) {
        break;
      }
      const SinCos next(latitude);
      s = next.sin;
      c = next.cos;
    }
    phi = latitude;
  }

  double Scale(double x, double y) const {
    const double dx = x - x0;
    const double dy = y0 - y;
    const double root2 = (dx * dx + dy * dy) * ratio2;
    const double s = 0.5 * (C - root2) * invN;
    return std::sqrt(root2 * (1 - e2 * s * s) / (1 - s * s));
  }

 private:
  double Q(double s) const {
    const double es = e * s;
    const double inv = 1 / (1 - es * es);
    return (1 - e2) * (s * inv - log2e * std::log((1 - es) * (1 - es) * inv));
  }
  double Radius(double q) const { return aOverN * std::sqrt(C - n * q); }

  const double log2e = 0.5 / e, invOneMinusE2 = 1 / (1 - e2);
  const double s1, m1, m2, n, C;
  const double aOverN = a / n, invN = 1 / n, ratio2 = (n / a) * (n / a);
  const double lambda0, x0, y0;
};

}  // namespace bench
