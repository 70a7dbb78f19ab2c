#include "projection/oblique_mercator.h"

#include <algorithm>
#include <cmath>

namespace latigo {

namespace {

// The latitude is good when a pass changes it by no more than this, radians.
constexpr double LatitudeTolerance = 1e-9;

constexpr int MaxPasses = 30;

}  // namespace

double ObliqueMercator::MakeB() const {
  const double c = std::cos(RefLatitude);
  return std::sqrt(1 + e2() * c * c * c * c / (1 - e2()));
}

double ObliqueMercator::MakeA() const {
  const double s = std::sin(RefLatitude);
  return a() * B * ScaleFactor * std::sqrt(1 - e2()) / (1 - e2() * s * s);
}

double ObliqueMercator::MakeD() const {
  const double s = std::sin(RefLatitude);
  return B * std::sqrt(1 - e2()) / (std::sqrt(1 - e2() * s * s) * std::cos(RefLatitude));
}

// On the equator D is 1, and rounding must not bring its square below.
double ObliqueMercator::MakeF() const {
  const double root = std::sqrt(std::max(D * D - 1, 0.0));
  return RefLatitude < 0 ? D - root : D + root;
}

ObliqueMercator::ObliqueMercator(const GeodesyParams& params)
    : Projection(params),
      B(MakeB()),
      A(MakeA()),
      D(MakeD()),
      F(MakeF()),
      H(F * std::pow(IsometricT(RefLatitude), B)),
      LogH(std::log(H)),
      Gamma0(ArcSine(std::sin(SkewAzimuth) / D)),
      Skew(SinCosOf(Gamma0)),
      Lambda0(CentralMeridian - ArcSine(std::tan(Gamma0) * (F - 1 / F) / 2) / B) {}

errcode ObliqueMercator::GeoXY(double& x, double& y, double phi, double lambda) const {
  const double Q = std::exp(LogH + B * IsometricLatitude(std::sin(phi)));  // H / t^B
  const double S = (Q - 1 / Q) / 2;
  const double T = (Q + 1 / Q) / 2;
  const SinCos theta = SinCosOf(B * (lambda - Lambda0));
  const double V = theta.sin;
  const double UT = S * Skew.sin - V * Skew.cos;  // U T
  const double v = A * std::log((T - UT) / (T + UT)) / (2 * B);
  const double u = (A / B) * std::atan2(S * Skew.cos + V * Skew.sin, theta.cos);
  UVXY(u, v, x, y);
  return errcode();
}

ObliqueMercator::Aposphere ObliqueMercator::OnAposphere(double u, double v) const {
  const double Q = std::exp(-B * v / A);
  const double S = (Q - 1 / Q) / 2;
  const double T = (Q + 1 / Q) / 2;
  const auto [V, along] = SinCosOf(B * u / A);
  const double UT = V * Skew.cos + S * Skew.sin;  // U T
  // (H / sqrt((1 + U) / (1 - U)))^(1/B)
  const double t = std::exp((LogH - std::log((T + UT) / (T - UT)) / 2) / B);
  return {Converge(t, LatitudeTolerance, MaxPasses), S * Skew.cos - V * Skew.sin, along};
}

errcode ObliqueMercator::UVGeo(double u, double v, double& phi, double& lambda) const {
  const auto [latitude, across, along] = OnAposphere(u, v);
  if (latitude.passes > MaxPasses) {
    return errcode(NoConvergence, Fatal);
  }
  phi = latitude.Latitude();
  lambda = Lambda0 - std::atan(across / along) / B;
  return errcode();
}

errcode ObliqueMercator::XYGeo(double x, double y, double& phi, double& lambda) const {
  double u = 0;
  double v = 0;
  XYUV(x, y, u, v);
  return UVGeo(u, v, phi, lambda);
}

errcode ObliqueMercator::Scale(double x, double y, double& k) const {
  double u = 0;
  double v = 0;
  XYUV(x, y, u, v);
  const auto [latitude, across, along] = OnAposphere(u, v);
  if (latitude.passes > MaxPasses) {
    return errcode(NoConvergence, Fatal);
  }
  // k = A cos(B u / A) / (a m cos(B (lambda - lambda0))), and the last cosine is that of an arc tangent.
  k = A / a() * std::copysign(Hypotenuse(along, across), along) * InvParallelRatio(latitude.u);
  return errcode();
}

void ObliqueMercator::TurnToGrid(const SinCos& omega, double u, double v, double& x, double& y) const {
  x = (v * omega.cos + u * omega.sin) / Unit + FalseEasting;
  y = (u * omega.cos - v * omega.sin) / Unit + FalseNorthing;
}

void ObliqueMercator::TurnToSkew(const SinCos& omega, double x, double y, double& u, double& v) const {
  const double X = (x - FalseEasting) * Unit;
  const double Y = (y - FalseNorthing) * Unit;
  v = X * omega.cos - Y * omega.sin;
  u = Y * omega.cos + X * omega.sin;
}

}  // namespace latigo
