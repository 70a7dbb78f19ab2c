#include "projection/stereographic.h"

#include <cmath>

namespace latigo {

namespace {

// The latitude is good when a Newton step is no larger than this, radians.
constexpr double LatitudeTolerance = 1e-12;

// Four to six steps are the rule; the bound only ends what would never end on an ellipsoid far from the earth's.
constexpr int MaxPasses = 1000;

// A point this near to the false origin has no direction from it, metres.
constexpr double NoDistance = 1e-20;

}  // namespace

Stereographic::Stereographic(const GeodesyParams& params)
    : Projection(params),
      Sphere(*this, RefLatitude),
      N(Sphere.exponent),
      C(std::exp(Sphere.constant)),
      LonN(CentralMeridian * N),
      TwoRK(Sphere.radius * (ScaleFactor + ScaleFactor)),
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
  const double X = (x - FalseEasting) / ScaleFactor;
  const double Y = (y - FalseNorthing) / ScaleFactor;
  const double r = Hypotenuse(X, Y);
  const bool apart = r > NoDistance;
  const double sx = apart ? X / r : 1;
  const double sy = apart ? Y / r : 0;
  // The angular distance from the origin is c = 2 atan(r / 2R).
  const auto [cosC, sinC] = FromHalfComplement(r / TwoR);
  const double sinChi = cosC * Sphere.sinChi0 + Sphere.cosChi0 * sinC * sy;
  const double cosChi = CosOfSine(sinChi);
  lambda = (std::asin(sinC * sx / cosChi) + LonN) / N;

  // Newton's iteration for c z^n = w0 = tan(pi/4 + chi/2), z = tan(pi/4 + phi/2) ((1 - e s)/(1 + e s))^(e/2), from chi.
  const double w0 = sinChi < 0 ? cosChi / (1 - sinChi) : (1 + sinChi) / cosChi;
  double latitude = std::asin(sinChi);
  double step = 0;
  int passes = 0;
  do {
    const auto [sinH, cosH] = SinCosOf(latitude / 2 + HalfPi / 2);
    const double s = (sinH - cosH) * (sinH + cosH);
    const double invCosH = 1 / cosH;
    const double T = sinH * invCosH;
    const double eccTerm = EccTerm(s);
    const double P = std::exp(-eccTerm);
    const double zN1 = std::exp((N - 1) * (std::log(T) - eccTerm));
    const double g = C * (zN1 * (T * P)) - w0;
    // The slope of z nearly: it has e2 s where the derivative has e2 s^2. The latitude reached is the same.
    const double Q =
        0.5 * P * invCosH * invCosH - 2 * sinH * sinH * e2() * s / (1 - e2() * s);  // 2 sin^2 h = T cos(phi)
    step = g / (C * N * zN1 * Q);
    latitude -= step;
  } while (std::fabs(step) > LatitudeTolerance && ++passes < MaxPasses);
  phi = latitude;
  return errcode();
}

errcode Stereographic::Scale(double x, double y, double& k) const {
  const double ratio = Hypotenuse(x - FalseEasting, y - FalseNorthing) / TwoR;
  k = ratio * ratio / ScaleFactor + ScaleFactor;
  return errcode();
}

}  // namespace latigo
