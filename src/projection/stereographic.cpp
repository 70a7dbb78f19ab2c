#include "projection/stereographic.h"

#include <algorithm>
#include <cmath>

namespace latigo {

namespace {

// The latitude is good when a Newton step is no larger than this, radians.
constexpr double LatitudeTolerance = 1e-12;

// Four to six steps are the rule; the bound only ends what would never end on an ellipsoid far from the earth's.
constexpr int MaxPasses = 1000;

}  // namespace

Stereographic::Stereographic(const GeodesyParams& params)
    : Projection(params),
      Sphere(*this, RefLatitude),
      N(Sphere.exponent),
      C(std::exp(Sphere.constant)),
      LonN(CentralMeridian * N),
      InvN(1 / N),
      TwoRK(Sphere.radius * (ScaleFactor + ScaleFactor)),
      InvTwoRK(1 / TwoRK),
      TwoR(2 * Sphere.radius) {}

errcode Stereographic::GeoXY(double& x, double& y, double phi, double lambda) const {
  const SinCos chi = FromIsometric(Sphere.IsometricLatitude(phi));
  const SinCos Lambda = SinCosOf(N * lambda - LonN);
  const double D = 1 + Sphere.sinChi0 * chi.sin + Sphere.cosChi0 * chi.cos * Lambda.cos;
  const double factor = TwoRK / D;
  x = factor * chi.cos * Lambda.sin + FalseEasting;
  y = factor * (Sphere.cosChi0 * chi.sin - Sphere.sinChi0 * chi.cos * Lambda.cos) + FalseNorthing;
  return errcode();
}

errcode Stereographic::XYGeo(double x, double y, double& phi, double& lambda) const {
  // The way from the origin on the sphere is c = 2 atan(r / 2R), towards X/r east and Y/r north. With X and Y over 2R,
  // 1 + cos c = 2 / (1 + r^2) = d, and sin c times the direction is d X and d Y.
  const double X = (x - FalseEasting) * InvTwoRK;
  const double Y = (y - FalseNorthing) * InvTwoRK;
  const double d = 2 / (1 + (X * X + Y * Y));
  const double sinChi = std::clamp((d - 1) * Sphere.sinChi0 + Sphere.cosChi0 * (d * Y), -1.0, 1.0);
  // Sine and cosine of h = pi/4 + chi/2; no double is a right angle.
  SinCos h = {std::sqrt((1 + sinChi) / 2), std::max(std::sqrt((1 - sinChi) / 2), CosOfRightAngle)};
  const double cosChi = std::max(2 * h.sin * h.cos, CosOfRightAngle);  // 0 at the far pole
  lambda = (ArcSine(d * X / cosChi) + LonN) * InvN;

  // Newton's iteration for c z^n = w0 = tan(h), z = tan(pi/4 + phi/2) ((1 - e s)/(1 + e s))^(e/2), from chi.
  const double w0 = h.sin / h.cos;
  double latitude = std::asin(sinChi);
  for (int passes = 1;; ++passes) {
    const double s = (h.sin - h.cos) * (h.sin + h.cos);
    const double invCosH = 1 / h.cos;
    const double T = h.sin * invCosH;
    const double eccTerm = EccTerm(s);
    const double P = std::exp(-eccTerm);
    const double zN1 = std::exp((N - 1) * (std::log(T) - eccTerm));
    const double g = C * (zN1 * (T * P)) - w0;
    // The slope of z nearly: it has e2 s where the derivative has e2 s^2. The latitude reached is the same.
    const double Q =
        0.5 * P * invCosH * invCosH - 2 * h.sin * h.sin * e2() * s / (1 - e2() * s);  // 2 sin^2 h = T cos(phi)
    const double step = g / (C * N * zN1 * Q);
    latitude -= step;
    if (!(std::fabs(step) > LatitudeTolerance) || passes == MaxPasses) {
      break;
    }
    h = SinCosOf(latitude / 2 + HalfPi / 2);
  }
  phi = latitude;
  return errcode();
}

errcode Stereographic::Scale(double x, double y, double& k) const {
  const double ratio = Hypotenuse(x - FalseEasting, y - FalseNorthing) / TwoR;
  k = ratio * ratio / ScaleFactor + ScaleFactor;
  return errcode();
}

}  // namespace latigo
