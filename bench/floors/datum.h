#pragma once

#include "floors/ellipsoid.h"

namespace bench {

struct EcefFloor : FloorEllipsoid {
  using FloorEllipsoid::FloorEllipsoid;

  void GeoECEF(double phi, double lambda, double h, double& X, double& Y, double& Z) const {
    const SinCos p(phi);
    const SinCos l(lambda);
    const double radius = N(p.sin);
    const double across = (radius + h) * p.cos;
    X = across * l.cos;
    Y = across * l.sin;
    Z = (oneMinusE2 * radius + h) * p.sin;
  }

  void ECEFGeo(double X, double Y, double Z, double& phi, double& lambda, double& h) const {
    const double p = std::sqrt(X * X + Y * Y);
    const double invP = 1 / p;
    const double T0 = Z * invP;
    // T = tan phi; the second term is a e2 sin(phi) / w.
    double T = T0 * invOneMinusE2;
    double w;
    double before;
    double change;
    double scale;
    do {
      before = T;
      w = std::sqrt(1 + oneMinusE2 * T * T);
      T = T0 + ae2 * invP * before / w;
      change = std::fabs(T - before);
      scale = 1 + T * before;
    } while (change > 1e-9 * scale);
    phi = std::atan(T);
    lambda = std::atan2(Y, X);
    // N belongs to the latitude before the last iteration.
    h = p * std::sqrt(1 + T * T) - a * std::sqrt(1 + before * before) / w;
  }

  const double oneMinusE2 = 1 - e2, invOneMinusE2 = 1 / (1 - e2), ae2 = a * e2;
};

// The seven-parameter transformation between two ellipsoids.
class ShiftFloor {
 public:
  ShiftFloor(const EcefFloor& other, const EcefFloor& own, const EllDiff& diff)
      : other_(other), own_(own), d_(diff), invScale_(1 / diff.DeltaScale) {}

  void Forward(double phi, double lambda, double h, double& phi2, double& lambda2, double& h2) const {
    double X, Y, Z;
    other_.GeoECEF(phi, lambda, h, X, Y, Z);
    own_.ECEFGeo((X + d_.DeltaRZ * Y - d_.DeltaRY * Z) * d_.DeltaScale + d_.DeltaX,
                 (Y - d_.DeltaRZ * X + d_.DeltaRX * Z) * d_.DeltaScale + d_.DeltaY,
                 (Z + d_.DeltaRY * X - d_.DeltaRX * Y) * d_.DeltaScale + d_.DeltaZ, phi2, lambda2, h2);
  }

  void Reverse(double phi, double lambda, double h, double& phi2, double& lambda2, double& h2) const {
    double X, Y, Z;
    own_.GeoECEF(phi, lambda, h, X, Y, Z);
    other_.ECEFGeo((X - d_.DeltaRZ * Y + d_.DeltaRY * Z) * invScale_ - d_.DeltaX,
                   (Y + d_.DeltaRZ * X - d_.DeltaRX * Z) * invScale_ - d_.DeltaY,
                   (Z - d_.DeltaRY * X + d_.DeltaRX * Y) * invScale_ - d_.DeltaZ, phi2, lambda2, h2);
  }

 private:
  const EcefFloor other_, own_;
  const EllDiff d_;
  const double invScale_;
};

}  // namespace bench
