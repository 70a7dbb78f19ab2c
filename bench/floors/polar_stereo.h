#pragma once

#include "floors/ellipsoid.h"

namespace bench {

// For the north pole, with the scale factor there.
class PolarStereoFloor : FloorEllipsoid {
 public:
  explicit PolarStereoFloor(const GeodesyParams& p)
      : FloorEllipsoid(p),
        factor(2 * a * p.ScaleFactor / std::sqrt(std::pow(1 + e, 1 + e) * std::pow(1 - e, 1 - e))),
        series(e2 * (1.0 / 2 + e2 * (5.0 / 24 + e2 * (1.0 / 12 + e2 * 13.0 / 360))),
               e2 * e2 * (7.0 / 48 + e2 * (29.0 / 240 + e2 * 811.0 / 11520)),
               e2 * e2 * e2 * (7.0 / 120 + e2 * 81.0 / 1120), e2 * e2 * e2 * e2 * 4279.0 / 161280),
        lambda0(p.CentralMeridian),
        x0(p.FalseEasting),
        y0(p.FalseNorthing) {}

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const SinCos p(phi);
    const SinCos theta(lambda - lambda0);
    const double es = e * p.sin;
    const double rho = factor * p.cos / (1 + p.sin) * std::exp(halfE * std::log((1 + es) / (1 - es)));
    x = x0 + rho * theta.sin;
    y = y0 - rho * theta.cos;
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    const double dx = x - x0;
    const double dy = y0 - y;
    lambda = lambda0 + std::atan2(dx, dy);
    phi = Latitude(std::sqrt(dx * dx + dy * dy));
  }

  double Scale(double x, double y) const {
    const double dx = x - x0;
    const double dy = y0 - y;
    const double r = std::sqrt(dx * dx + dy * dy);
    const SinCos p(Latitude(r));
    return r * invA * std::sqrt(1 - e2 * p.sin * p.sin) / p.cos;
  }

 private:
  double Latitude(double r) const {
    const double u = r * invFactor;
    const double inv = 1 / (1 + u * u);
    // Sine and cosine of the conformal latitude.
    const double s = (1 - u * u) * inv;
    const double c = 2 * u * inv;
    return HalfPi - 2 * std::atan(u) + series(2 * s * c, 2 * s * -s + 1);
  }

  const double factor;
  const FourSines series;
  const double lambda0, x0, y0;
  const double invA = 1 / a, invFactor = 1 / factor;
};

}  // namespace bench
