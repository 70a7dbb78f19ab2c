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

constexpr double QuarterPi = HalfPi / 2;

}  // namespace

// P = ((1 - e s) / (1 + e s))^(e/2)
double Stereographic::IsometricFactor(double sinPhi) const {
  const double es = e() * sinPhi;
  return std::pow((1 - es) / (1 + es), e() / 2);
}

double Stereographic::MakeConstant() const {
  const double w0 = std::tan(RefLatitude / 2 + QuarterPi) * IsometricFactor(std::sin(RefLatitude));
  return std::tan(Sphere.chi0 / 2 + QuarterPi) / std::pow(w0, Sphere.exponent);
}

Stereographic::Stereographic(const GeodesyParams& params)
    : Projection(params),
      Sphere(*this, RefLatitude),
      N(Sphere.exponent),
      C(MakeConstant()),
      SinChi0(std::sin(Sphere.chi0)),
      CosChi0(std::cos(Sphere.chi0)),
      LonN(CentralMeridian * N),
      TwoRK(Sphere.radius * (ScaleFactor + ScaleFactor)),
      TwoR(2 * Sphere.radius) {}

errcode Stereographic::GeoXY(double& x, double& y, double phi, double lambda) const {
  const double w = std::tan(phi / 2 + QuarterPi) * IsometricFactor(std::sin(phi));
  const double chi = 2 * std::atan(C * std::pow(w, N)) - HalfPi;
  const double Lambda = N * lambda - LonN;
  const double sinChi = std::sin(chi);
  const double cosChi = std::cos(chi);
  const double cosLambda = std::cos(Lambda);
  const double D = 1 + SinChi0 * sinChi + CosChi0 * cosChi * cosLambda;
  x = TwoRK * cosChi * std::sin(Lambda) / D + FalseEasting;
  y = TwoRK * (CosChi0 * sinChi - SinChi0 * cosChi * cosLambda) / D + FalseNorthing;
  return errcode();
}

errcode Stereographic::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double X = (x - FalseEasting) / ScaleFactor;
  const double Y = (y - FalseNorthing) / ScaleFactor;
  const double r = std::hypot(X, Y);
  const bool apart = r > NoDistance;
  const double sx = apart ? X / r : 1;
  const double sy = apart ? Y / r : 0;
  const double c = 2 * std::atan(r / TwoR);
  const double sinC = std::sin(c);
  const double chi = std::asin(std::cos(c) * SinChi0 + CosChi0 * sinC * sy);
  const double Lambda = std::asin(sinC * sx / std::cos(chi)) + LonN;

  const double w0 = std::tan(chi / 2 + QuarterPi);
  double latitude = chi;
  double step = 0;
  int passes = 0;
  do {
    const double s = std::sin(latitude);
    const double P = IsometricFactor(s);
    const double h = latitude / 2 + QuarterPi;
    const double T = std::tan(h);
    const double cosH = std::cos(h);
    const double z = T * P;
    const double zN1 = std::pow(z, N - 1);
    const double g = C * (zN1 * z) - w0;
    // The slope of z nearly: it has e2 s where the derivative has e2 s^2. The latitude reached is the same.
    const double Q = 0.5 * P / (cosH * cosH) - T * std::cos(latitude) * e2() * s / (1 - e2() * s);
    step = g / (C * N * zN1 * Q);
    latitude -= step;
  } while (std::fabs(step) > LatitudeTolerance && ++passes < MaxPasses);
  phi = latitude;
  lambda = Lambda / N;
  return errcode();
}

errcode Stereographic::Scale(double x, double y, double& k) const {
  const double ratio = std::hypot(x - FalseEasting, y - FalseNorthing) / TwoR;
  k = ratio * ratio / ScaleFactor + ScaleFactor;
  return errcode();
}

}  // namespace latigo
