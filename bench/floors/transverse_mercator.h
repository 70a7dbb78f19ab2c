#pragma once

#include "floors/ellipsoid.h"

namespace bench {

class TransverseMercatorFloor : FloorEllipsoid {
 public:
  explicit TransverseMercatorFloor(const GeodesyParams& p)
      : FloorEllipsoid(p),
        n(f / (2 - f)),
        ep2(e2 / (1 - e2)),
        G(a * (1 - n) * (1 - n * n) * (1 + 2.25 * n * n + 225.0 / 64 * n * n * n * n)),
        arc(-1.5 * n + 9.0 / 16 * n * n * n, 15.0 / 16 * n * n - 15.0 / 32 * n * n * n * n, -35.0 / 48 * n * n * n,
            315.0 / 512 * n * n * n * n),
        foot(Footpoint(n)),
        k0(p.ScaleFactor),
        lambda0(p.CentralMeridian),
        x0(p.FalseEasting),
        y0(p.FalseNorthing - k0 * G * (p.RefLatitude + Series(arc, SinCos(p.RefLatitude)))) {}

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const SinCos p(phi);
    const double d = OverPi(lambda - lambda0);
    const double c2 = p.cos * p.cos;
    const double t = p.sin / p.cos;
    const double T = t * t;
    const double C = ep2 * c2;
    const double A = d * p.cos;
    const double A2 = A * A;
    const double kN = k0 * a / std::sqrt(1 - e2 * p.sin * p.sin);
    const double M = phi + Series(arc, p);
    const double X2 = (1 - T + C) * (1.0 / 6);
    const double X4 = (5 - 18 * T + T * T + (14 - 58 * T) * C) * (1.0 / 120);
    const double X6 = (61 - 479 * T + 179 * T * T - T * T * T) * (1.0 / 5040);
    const double Y2 = (5 - T + (9 + 4 * C) * C) * (1.0 / 12);
    const double Y4 = (61 - 58 * T + T * T + (270 - 330 * T) * C) * (1.0 / 360);
    x = kN * A * (1 + A2 * (X2 + A2 * (X4 + A2 * X6))) + x0;
    y = kG * M + 0.5 * t * kN * A2 * (1 + A2 * (Y2 + A2 * Y4)) + y0;
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    const double mu = (y - y0) * invKG;
    const double phi1 = mu + Series(foot, SinCos(mu));
    const SinCos p(phi1);
    const double invC = 1 / p.cos;
    const double t = p.sin * invC;
    const double T = t * t;
    const double C = ep2 * p.cos * p.cos;
    const double Q = (x - x0) * invKA * std::sqrt(1 - e2 * p.sin * p.sin);
    const double Q2 = Q * Q;
    const double P2 = (5 + 3 * T + (1 - 9 * T) * C - 4 * C * C) * (-1.0 / 12);
    const double P4 = (61 + 90 * T + 45 * T * T + (46 - 252 * T - 90 * T * T) * C) * (1.0 / 360);
    const double L2 = (1 + 2 * T + C) * (-1.0 / 6);
    const double L4 = (5 + 28 * T + 24 * T * T + (6 + 8 * T) * C) * (1.0 / 120);
    const double L6 = (61 + 662 * T + 1320 * T * T + 720 * T * T * T) * (1.0 / 5040);
    phi = phi1 - 0.5 * (1 + C) * t * Q2 * (1 + Q2 * (P2 + Q2 * P4));
    lambda = OverPi(Q * (1 + Q2 * (L2 + Q2 * (L4 + Q2 * L6))) * invC + lambda0);
  }

  double Scale(double x, double y) const {
    const double mu = (y - y0) * invKG;
    const SinCos p(mu + Series(foot, SinCos(mu)));
    const double C = ep2 * p.cos * p.cos;
    const double Q = (x - x0) * invKA;
    const double Q2 = Q * Q * (1 - e2 * p.sin * p.sin);
    return k0 * (1 + 0.5 * (1 + C) * Q2 * (1 + (1 + 5 * C) * Q2 * (1.0 / 12)));
  }

 private:
  static double Series(const FourSines& series, const SinCos& u) {
    return series(2 * u.sin * u.cos, 2 * u.cos * u.cos - 1);
  }

  const double n, ep2, G;
  const FourSines arc, foot;
  const double k0, lambda0, x0, y0;
  const double kG = k0 * G, invKG = 1 / kG, invKA = 1 / (k0 * a);
};

}  // namespace bench
