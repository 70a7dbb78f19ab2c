// The two double projections, by Gauss's conformal sphere.
#pragma once

#include "floors/ellipsoid.h"

namespace bench {

struct SphereFloor : FloorEllipsoid {
  explicit SphereFloor(const GeodesyParams& p)
      : FloorEllipsoid(p),
        phi0(p.RefLatitude),
        n(std::sqrt(1 + e2 / (1 - e2) * std::pow(std::cos(phi0), 4))),
        sin0(std::sin(phi0) / n),
        cos0(std::sqrt(1 - sin0 * sin0)),
        R(std::sqrt(N(std::sin(phi0)) * M(std::sin(phi0)))) {}

  const double phi0, n, sin0, cos0, R;
  // Isometric latitude of the origin on the sphere less n times that on the ellipsoid.
  const double K = 0.5 * std::log((1 + sin0) / (1 - sin0)) - n * Isometric(std::sin(phi0));
};

class StereographicFloor : SphereFloor {
 public:
  explicit StereographicFloor(const GeodesyParams& p)
      : SphereFloor(p), k0(p.ScaleFactor), lambda0N(p.CentralMeridian * n), x0(p.FalseEasting), y0(p.FalseNorthing) {}

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const double z = std::exp(K + n * Isometric(std::sin(phi)));
    const SinCos l(n * lambda - lambda0N);
    // Sine and cosine of the latitude on the sphere, times 1 + z2.
    const double z2 = z * z;
    const double s = z2 - 1;
    const double c = 2 * z;
    const double factor = twoRK / (1 + z2 + sin0 * s + cos0 * c * l.cos);
    x = factor * c * l.sin + x0;
    y = factor * (cos0 * s - sin0 * c * l.cos) + y0;
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    // Components of the tangent of half the distance.
    const double X = (x - x0) * invTwoRK;
    const double Y = (y - y0) * invTwoRK;
    const double r2 = X * X + Y * Y;
    const double invD = 1 / (1 + r2);
    const double sinChi = ((1 - r2) * sin0 + 2 * cos0 * Y) * invD;
    const double cosChi = std::sqrt(1 - sinChi * sinChi);
    lambda = (std::asin(2 * X * invD / cosChi) + lambda0N) * invN;

    const double w0 = (1 + sinChi) / cosChi;
    double latitude = std::asin(sinChi);
    double s = sinChi;
    double c = cosChi;
    double step;
    for (;;) {
      const double es = e * s;
      const double halfLogP = halfE * std::log((1 - es) / (1 + es));
      const double P = std::exp(halfLogP);
      const double T = (1 + s) / c;
      const double zN1 = std::exp((n - 1) * (std::log(T) + halfLogP));
      const double Q = P / (1 - s) - (1 + s) * e2 * s / (1 - e2 * s);  // the library's slope, for equal iterations
      step = (C * T * P * zN1 - w0) / (C * n * zN1 * Q);
      latitude -= step;
      if (!(std::fabs(step) > 1e-12)) {
        break;
      }
      const SinCos next(latitude);
      s = next.sin;
      c = next.cos;
    }
    phi = latitude;
  }

  double Scale(double x, double y) const {
    const double X = x - x0;
    const double Y = y - y0;
    return (X * X + Y * Y) * scaleFactor + k0;
  }

 private:
  const double k0, lambda0N, x0, y0;
  const double C = std::exp(K), twoRK = 2 * R * k0, invTwoRK = 1 / twoRK, invN = 1 / n;
  const double scaleFactor = 1 / (4 * R * R * k0);
};

class ObliqueCylindricalFloor : SphereFloor {
 public:
  explicit ObliqueCylindricalFloor(const GeodesyParams& p)
      : SphereFloor(p), RK(R * p.ScaleFactor), lambda0(p.CentralMeridian), x0(p.FalseEasting), y0(p.FalseNorthing) {}

  void GeoXY(double phi, double lambda, double& x, double& y) const {
    const double E = std::exp(K + n * Isometric(std::sin(phi)));
    const SinCos l(n * (lambda - lambda0));
    const double inv = 1 / (1 + E * E);
    const double sinB = (E * E - 1) * inv;
    const double cosB = 2 * E * inv;
    const double sinBar = sinB * cos0 - l.cos * sin0 * cosB;
    x = RK * std::asin(l.sin * cosB / std::sqrt(1 - sinBar * sinBar)) + x0;
    y = RK / 2 * std::log((1 + sinBar) / (1 - sinBar)) + y0;
  }

  void XYGeo(double x, double y, double& phi, double& lambda) const {
    const double E = std::exp((y - y0) * invRK);
    const SinCos l((x - x0) * invRK);
    const double inv = 1 / (1 + E * E);
    const double cosBar = 2 * E * inv;
    const double sinB = (E * E - 1) * inv * cos0 + l.cos * sin0 * cosBar;
    lambda = std::asin(l.sin * cosBar / std::sqrt(1 - sinB * sinB)) * invN + lambda0;

    // w = tan(pi/4 + phi/2)
    const double expS = std::exp((0.5 * std::log((1 + sinB) / (1 - sinB)) - K) * invN);
    double w = tan0;
    double change;
    double scale;
    do {
      const double v = w * w;
      // (1 + e s) / (1 - e s) with s = (v - 1) / (v + 1)
      const double next = expS * std::exp(halfE * std::log((oneMinusE + onePlusE * v) / (onePlusE + oneMinusE * v)));
      change = std::fabs(next - w);
      scale = 1 + next * w;
      w = next;
    } while (change > 0.5e-7 * scale);
    phi = 2 * std::atan(w) - HalfPi;
  }

  double Scale(double, double) const { return 1; }

 private:
  const double RK, lambda0, x0, y0;
  const double invRK = 1 / RK, invN = 1 / n, tan0 = std::tan(phi0 / 2 + HalfPi / 2);
};

}  // namespace bench
