#pragma once

#include "floors/ellipsoid.h"

namespace bench {

class ObliqueMercatorFloor : FloorEllipsoid {
 public:
  // The grid is rotated by the azimuth at the centre for kind 6, at the natural origin for kind 7.
  explicit ObliqueMercatorFloor(const GeodesyParams& p)
      : FloorEllipsoid(p),
        s0(std::sin(p.RefLatitude)),
        c0(std::cos(p.RefLatitude)),
        B(std::sqrt(1 + e2 / (1 - e2) * c0 * c0 * c0 * c0)),
        A(a * B * p.ScaleFactor * std::sqrt(1 - e2) / (1 - e2 * s0 * s0)),
        D(B * std::sqrt(1 - e2) / (c0 * std::sqrt(1 - e2 * s0 * s0))),
        F(D + std::copysign(std::sqrt(D * D - 1), s0)),
        logH(std::log(F) - B * Isometric(s0)),
        gamma0(std::asin(std::sin(p.SkewAzimuth) / D)),
        lambda0(p.CentralMeridian - std::asin(std::tan(gamma0) * (F - 1 / F) / 2) / B),
        skew(gamma0),
        turn(p.Kind == 6 ? p.SkewAzimuth : gamma0),
        x0(p.FalseEasting),
        y0(p.FalseNorthing) {}

  double Gamma0() const { return gamma0; }

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const double Q = std::exp(logH + B * Isometric(std::sin(phi)));
    const double invQ = 1 / Q;
    const double S = 0.5 * (Q - invQ);
    const double T = 0.5 * (Q + invQ);
    const SinCos theta(B * (lambda - lambda0));
    const double U = S * skew.sin - theta.sin * skew.cos;  // times T
    const double v = halfAOverB * std::log((T - U) / (T + U));
    const double u = aOverB * std::atan2(S * skew.cos + theta.sin * skew.sin, theta.cos);
    x = v * turn.cos + u * turn.sin + x0;
    y = u * turn.cos - v * turn.sin + y0;
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    const Aposphere point(*this, x, y);
    phi = HalfPi - 2 * std::atan(HalfAngle(point.t, 1e-9));
    lambda = lambda0 - std::atan(point.across / point.along.cos) * invB;
  }

  double Scale(double x, double y) const {
    const Aposphere point(*this, x, y);
    const double u = HalfAngle(point.t, 1e-9);
    // Cosine of the longitude from its tangent.
    const double c = point.along.cos;
    return kFactor * std::copysign(std::sqrt(c * c + point.across * point.across), c) * InvParallelRatio(u);
  }

 private:
  struct Aposphere {
    Aposphere(const ObliqueMercatorFloor& f, double x, double y)
        : along(((y - f.y0) * f.turn.cos + (x - f.x0) * f.turn.sin) * f.bOverA) {
      const double v = (x - f.x0) * f.turn.cos - (y - f.y0) * f.turn.sin;
      const double Q = std::exp(-v * f.bOverA);
      const double invQ = 1 / Q;
      const double S = 0.5 * (Q - invQ);
      const double T = 0.5 * (Q + invQ);
      const double U = along.sin * f.skew.cos + S * f.skew.sin;  // times T
      across = S * f.skew.cos - along.sin * f.skew.sin;
      t = std::exp((f.logH - 0.5 * std::log((T + U) / (T - U))) * f.invB);
    }
    SinCos along;
    double across, t;
  };

  const double s0, c0, B, A, D, F, logH, gamma0, lambda0;
  const SinCos skew, turn;
  const double x0, y0;
  const double aOverB = A / B, halfAOverB = aOverB / 2, bOverA = B / A, invB = 1 / B, kFactor = A / a;
};

}  // namespace bench
