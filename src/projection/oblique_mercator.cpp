#include "projection/oblique_mercator.h"

#include <algorithm>
#include <cmath>

namespace latigo {

namespace {

// The latitude is good when a pass changes it by no more than this, radians.
constexpr double LatitudeTolerance = 1e-9;

constexpr int MaxPasses = 30;

// Rounding may lift the sine of a right angle above 1.
double ArcSine(double s) {
  return std::asin(std::clamp(s, -1.0, 1.0));
}

}  // namespace

ObliqueMercator::Turn::Turn(double omega) : sin(std::sin(omega)), cos(std::cos(omega)) {}

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
      Gamma0(ArcSine(std::sin(SkewAzimuth) / D)),
      Skew(Gamma0),
      Lambda0(CentralMeridian - ArcSine(std::tan(Gamma0) * (F - 1 / F) / 2) / B) {}

errcode ObliqueMercator::GeoXY(double& x, double& y, double phi, double lambda) const {
  const double Q = H / std::pow(IsometricT(phi), B);
  const double S = (Q - 1 / Q) / 2;
  const double T = (Q + 1 / Q) / 2;
  const double theta = B * (lambda - Lambda0);
  const double V = std::sin(theta);
  const double U = (S * Skew.sin - V * Skew.cos) / T;
  const double v = A * std::log((1 - U) / (1 + U)) / (2 * B);
  const double u = (A / B) * std::atan2(S * Skew.cos + V * Skew.sin, std::cos(theta));
  UVXY(u, v, x, y);
  return errcode();
}

errcode ObliqueMercator::UVGeo(double u, double v, double& phi, double& lambda) const {
  const double Q = std::exp(-B * v / A);
  const double S = (Q - 1 / Q) / 2;
  const double T = (Q + 1 / Q) / 2;
  const double along = B * u / A;
  const double V = std::sin(along);
  const double U = (V * Skew.cos + S * Skew.sin) / T;
  const double t = std::pow(H / std::sqrt((1 + U) / (1 - U)), 1 / B);

  double latitude = HalfPi - 2 * std::atan(t);
  double change = 0;
  int passes = 0;
  do {
    if (passes++ == MaxPasses) {
      return errcode(NoConvergence, Fatal);
    }
    const double next = LatitudePass(t, std::sin(latitude));
    change = std::fabs(latitude - next);
    latitude = next;
  } while (change > LatitudeTolerance);
  phi = latitude;
  lambda = Lambda0 - std::atan((S * Skew.cos - V * Skew.sin) / std::cos(along)) / B;
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
  double phi = 0;
  double lambda = 0;
  XYUV(x, y, u, v);
  if (const std::int32_t code = UVGeo(u, v, phi, lambda).code(); code != 0) {
    return errcode(code, Fatal);
  }
  const double s = std::sin(phi);
  k = A * std::cos(B * u / A) * std::sqrt(1 - e2() * s * s) / (a() * std::cos(phi) * std::cos(B * (lambda - Lambda0)));
  return errcode();
}

void ObliqueMercator::TurnToGrid(const Turn& omega, double u, double v, double& x, double& y) const {
  x = (v * omega.cos + u * omega.sin) / Unit + FalseEasting;
  y = (u * omega.cos - v * omega.sin) / Unit + FalseNorthing;
}

void ObliqueMercator::TurnToSkew(const Turn& omega, double x, double y, double& u, double& v) const {
  const double X = (x - FalseEasting) * Unit;
  const double Y = (y - FalseNorthing) * Unit;
  v = X * omega.cos - Y * omega.sin;
  u = Y * omega.cos + X * omega.sin;
}

}  // namespace latigo
