#include "projection/oblique_mercator.h"

#include <algorithm>
#include <cmath>

namespace latigo {

namespace {

// The iteration ends when it changes the latitude by at most this, radians.
constexpr double LatitudeTolerance = 1e-9;

constexpr int MaxIterations = 30;

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

// (9-35): F = D + sqrt(D^2 - 1) in the north, D - sqrt(D^2 - 1) in the south. On the equator D is 1; rounding must not
// make the radicand negative.
double ObliqueMercator::MakeF() const {
  const double root = std::sqrt(std::max(D * D - 1, 0.0));
  return RefLatitude < 0 ? D - root : D + root;
}

// (9-39) with the book's G = (F - 1/F) / 2 (9-37).
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

// Book: Q, S, T, V, U, v, u, with E for H. Here (9-25) is Q = exp(ln H + B psi), since t = exp(-psi), and (9-30) is the
// logarithm of (T - UT) / (T + UT) with UT = U T, which saves the division of (9-29).
errcode ObliqueMercator::GeoXY(double& x, double& y, double phi, double lambda) const {
  const double Q = std::exp(LogH + B * IsometricLatitude(std::sin(phi)));  // (9-25)
  const double S = (Q - 1 / Q) / 2;                                        // (9-26)
  const double T = (Q + 1 / Q) / 2;                                        // (9-27)
  const SinCos theta = SinCosOf(B * (lambda - Lambda0));
  const double V = theta.sin;                                                     // (9-28)
  const double UT = S * Skew.sin - V * Skew.cos;                                  // (9-29)
  const double v = A * std::log((T - UT) / (T + UT)) / (2 * B);                   // (9-30)
  const double u = (A / B) * std::atan2(S * Skew.cos + V * Skew.sin, theta.cos);  // (9-31)
  UVXY(u, v, x, y);
  return errcode();
}

// Book: Q', S', T', V', U', t; here Q1 is Q' and so on, with UT1 = U' T'. (9-47) is t = (H / sqrt((1 + U') /
// (1 - U')))^(1/B).
ObliqueMercator::Aposphere ObliqueMercator::OnAposphere(double u, double v) const {
  const double Q1 = std::exp(-B * v / A);                                         // (9-42)
  const double S1 = (Q1 - 1 / Q1) / 2;                                            // (9-43)
  const double T1 = (Q1 + 1 / Q1) / 2;                                            // (9-44)
  const auto [V1, along] = SinCosOf(B * u / A);                                   // (9-45)
  const double UT1 = V1 * Skew.cos + S1 * Skew.sin;                               // (9-46)
  const double t = std::exp((LogH - std::log((T1 + UT1) / (T1 - UT1)) / 2) / B);  // (9-47)
  return {Converge(t, LatitudeTolerance, MaxIterations), S1 * Skew.cos - V1 * Skew.sin, along};
}

errcode ObliqueMercator::UVGeo(double u, double v, double& phi, double& lambda) const {
  const auto [latitude, across, along] = OnAposphere(u, v);
  if (latitude.iterations > MaxIterations) {
    return errcode(NoConvergence, Fatal);
  }
  phi = latitude.Latitude();
  lambda = Lambda0 - std::atan(across / along) / B;  // (9-48)
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
  if (latitude.iterations > MaxIterations) {
    return errcode(NoConvergence, Fatal);
  }
  // (9-32): k = A cos(B u / A) / (a m cos(B (lambda - lambda0))). The last cosine is that of the arc tangent of (9-48),
  // along / sqrt(along^2 + across^2).
  k = A / a() * std::copysign(Hypotenuse(along, across), along) * InvParallelRatio(latitude.u);
  return errcode();
}

void ObliqueMercator::RotateToGrid(const SinCos& omega, double u, double v, double& x, double& y) const {
  x = (v * omega.cos + u * omega.sin) / Unit + FalseEasting;   // (9-33)
  y = (u * omega.cos - v * omega.sin) / Unit + FalseNorthing;  // (9-34)
}

void ObliqueMercator::RotateToSkew(const SinCos& omega, double x, double y, double& u, double& v) const {
  const double X = (x - FalseEasting) * Unit;
  const double Y = (y - FalseNorthing) * Unit;
  v = X * omega.cos - Y * omega.sin;  // (9-40)
  u = Y * omega.cos + X * omega.sin;  // (9-41)
}

}  // namespace latigo
