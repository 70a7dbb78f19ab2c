#pragma once

#include "floors/ellipsoid.h"

namespace bench {

// For an origin that is not a pole.
class AzimuthEqDistFloor : FloorEllipsoid {
 public:
  explicit AzimuthEqDistFloor(const GeodesyParams& p)
      : FloorEllipsoid(p),
        s0(std::sin(p.RefLatitude)),
        c0(std::cos(p.RefLatitude)),
        N0(N(s0)),
        lambda0(p.CentralMeridian),
        x0(p.FalseEasting),
        y0(p.FalseNorthing) {}

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const SinCos d(lambda - lambda0);
    const SinCos p(phi);
    const double w = std::sqrt(1 - e2 * p.sin * p.sin);
    const double tanPsi = ((1 - e2) * p.sin + originTerm * w) / p.cos;
    const double north = c0 * tanPsi - s0 * d.cos;
    const double h = std::sqrt(d.sin * d.sin + north * north);
    const double invH = 1 / h;
    const double sinAz = d.sin * invH;
    const double cosAz = north * invH;
    const double s = std::asin(h / std::sqrt(1 + tanPsi * tanPsi));
    const double H = hFactor * cosAz;
    const double H2 = H * H;
    const double GH = G * H;
    const double s2 = s * s;
    const double c =
        N0 * s *
        (1 - s2 * H2 * (1 - H2) * (1.0 / 6) + s2 * s * (1.0 / 8) * GH * (1 - 2 * H2) +
         s2 * s2 * (1.0 / 120) * (H2 * (4 - 7 * H2) - 3 * G * G * (1 - 7 * H2)) - s2 * s2 * s * (1.0 / 48) * GH);
    x = c * sinAz + x0;
    y = c * cosAz + y0;
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    const double dx = x - x0;
    const double dy = y - y0;
    const double c = std::sqrt(dx * dx + dy * dy);
    const double invC = 1 / c;
    const double sinAz = dx * invC;
    const double cosAz = dy * invC;
    const double A = aFactor * cosAz * cosAz;
    const double B = bFactor * (1 - A) * cosAz;
    const double D = c * invN0;
    const double D3 = D * D * D;
    const double E = D - A * (1 + A) * D3 * (1.0 / 6) - B * (1 + 3 * A) * D3 * D * (1.0 / 24);
    const double F = 1 - A * E * E * 0.5 - B * E * E * E * (1.0 / 6);
    const SinCos e1(E);
    const double sinPsi = s0 * e1.cos + c0 * e1.sin * cosAz;
    const double invCosPsi = 1 / std::sqrt(1 - sinPsi * sinPsi);
    lambda = OverPi(std::asin(sinAz * e1.sin * invCosPsi) + lambda0);
    phi = std::atan((sinPsi - e2s0 * F) * invCosPsi * invOneMinusE2);
  }

  double Scale(double, double) const { return 1; }

 private:
  const double s0, c0, N0, lambda0, x0, y0;
  const double g = e2 / (1 - e2), second = std::sqrt(g), G = second * s0, hFactor = second * c0;
  const double originTerm = e2 * N0 * s0 / a, invN0 = 1 / N0, aFactor = -g * c0 * c0, bFactor = 3 * g * s0 * c0;
  const double e2s0 = e2 * s0, invOneMinusE2 = 1 / (1 - e2);
};

}  // namespace bench
