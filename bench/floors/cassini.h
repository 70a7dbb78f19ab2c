#pragma once

#include "floors/ellipsoid.h"

namespace bench {

// Coefficients of the meridian arc: A0 phi - A2 sin 2 phi + A4 sin 4 phi + A6 sin 6 phi, for a semi-major axis of 1.
struct ArcFloor {
  explicit ArcFloor(double e2)
      : A0(((-0.01953125 * e2 - 0.046875) * e2 - 0.25) * e2 + 1),
        sines(-((0.09375 + 0.0439453125 * e2) * e2 + 0.375) * e2, (0.0439453125 * e2 + 0.05859375) * e2 * e2,
              -0.01139322916667 * e2 * e2 * e2, 0) {}

  double operator()(double phi, double s, double c) const { return A0 * phi + sines(2 * s * c, 2 * c * c - 1); }

  const double A0;
  const FourSines sines;
};

class CassiniFloor : FloorEllipsoid {
 public:
  explicit CassiniFloor(const GeodesyParams& p)
      : FloorEllipsoid(p),
        arc(e2),
        foot(Footpoint(f / (2 - f))),
        lambda0(p.CentralMeridian),
        x0(p.FalseEasting),
        y0(p.FalseNorthing - a * arc(p.RefLatitude, std::sin(p.RefLatitude), std::cos(p.RefLatitude))) {}

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const SinCos p(phi);
    const double N1 = N(p.sin);
    const double A = (lambda - lambda0) * p.cos;
    const double A2 = A * A;
    const double C = ep2 * p.cos * p.cos;
    const double t = p.sin / p.cos;
    const double T = t * t;
    x = A * (1 - T * A2 * ((1.0 / 6) + (8 - T + 8 * C) * A2 * (1.0 / 120))) * N1 + x0;
    y = a * arc(phi, p.sin, p.cos) + A2 * (0.5 + (5 - T + 6 * C) * A2 * (1.0 / 24)) * t * N1 + y0;
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    const double mu = (y - y0) * invArcRadius;
    const SinCos m(mu);
    const double phi1 = mu + foot(2 * m.sin * m.cos, 2 * m.cos * m.cos - 1);
    const SinCos p(phi1);
    const double invC = 1 / p.cos;
    const double w2 = 1 - e2 * p.sin * p.sin;
    const double t = p.sin * invC;
    const double T = t * t;
    const double D = (x - x0) * std::sqrt(w2) * invA;
    const double D2 = D * D;
    phi = phi1 - w2 * t * invOneMinusE2 * D2 * (0.5 - (1 + 3 * T) * D2 * (1.0 / 24));
    lambda = lambda0 + D * (1 - T * D2 * ((1.0 / 3) - (1 + 3 * T) * D2 * (1.0 / 15))) * invC;
  }

  double Scale(double, double) const { return 1; }

 private:
  const ArcFloor arc;
  const FourSines foot;
  const double lambda0, x0, y0;
  const double ep2 = e2 / (1 - e2), invA = 1 / a, invOneMinusE2 = 1 / (1 - e2);
  const double invArcRadius = 1 / (a * (1 - e2 / 4 - 3 * e2 * e2 / 64 - 5 * e2 * e2 * e2 / 256));
};

}  // namespace bench
