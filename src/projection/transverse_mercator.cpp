#include "projection/transverse_mercator.h"

#include <cmath>

namespace latigo {

namespace {

// G for a semi-major axis of 1.
double RectifyingRatio(double n) {
  const double n2 = n * n;
  return (1 - n) * (1 - n2) * (1 + 2.25 * n2 + 225 * 0.015625 * n2 * n2);
}

}  // namespace

FourTerms TransverseMercator::Fold(const FourTerms& multipleAngles) {
  const auto [A2, A4, A6, A8] = multipleAngles;
  return {2 * (A2 - 2 * A4 + 3 * A6 - 4 * A8),  //
          8 * (A4 - 4 * A6 + 10 * A8),          //
          32 * (A6 - 6 * A8),                   //
          128 * A8};
}

double TransverseMercator::Series(const FourTerms& C, double u, const SinCos& of) {
  const double c2 = of.cos * of.cos;
  return u + of.sin * of.cos * (C[0] + c2 * (C[1] + c2 * (C[2] + c2 * C[3])));
}

TransverseMercator::TransverseMercator(const GeodesyParams& params)
    : Projection(params),
      ThirdFlattening(f() / (2 - f())),
      EccSquared(f() * (2 - f())),
      SecondEccSquared(EccSquared / (1 - EccSquared)),
      SemiMajor(a() / Unit),
      InvScaledMajor(1 / (ScaleFactor * SemiMajor)),
      RectifyingRadius(SemiMajor * RectifyingRatio(ThirdFlattening)),
      InvScaledRadius(1 / (RectifyingRadius * ScaleFactor)),
      QuarterMeridian(std::fabs(RectifyingRadius * ScaleFactor) * HalfPi),
      FootCoeffs(Fold(FootpointSeries(ThirdFlattening))),
      ArcCoeffs(Fold(ArcSeries(ThirdFlattening))),
      OriginArc(-ScaleFactor * RectifyingRadius * Series(ArcCoeffs, RefLatitude, SinCosOf(RefLatitude))) {
  if (RectifyingRadius * ScaleFactor == 0) {
    throw errcode(NoUsableProjection, Fatal);
  }
}

errcode TransverseMercator::GeoXY(double& x, double& y, double phi, double lambda) const {
  double d = lambda - CentralMeridian;
  if (d < -Pi) {
    d += TwoPi;
  } else if (d > Pi) {
    d -= TwoPi;
  }
  if (phi == HalfPi) {
    return errcode(PoleNotShown, Fatal);
  }
  const SinCos of = SinCosOf(phi);
  const auto [s, c] = of;
  const double t = s / c;
  const double T = t * t;
  const double C = SecondEccSquared * c * c;
  const double A = d * c;
  const double A2 = A * A;
  const double N = SemiMajor / std::sqrt(1 - EccSquared * s * s);
  const double M = RectifyingRadius * Series(ArcCoeffs, phi, of);

  const double X2 = (1 - T + C) * (1.0 / 6);
  const double X4 = (5 - 18 * T + T * T + (14 - 58 * T) * C) * (1.0 / 120);
  const double X6 = (61 - 479 * T + 179 * T * T - T * T * T) * (1.0 / 5040);
  const double Y2 = (5 - T + (9 + 4 * C) * C) * (1.0 / 12);
  const double Y4 = (61 - 58 * T + T * T + (270 - 330 * T) * C) * (1.0 / 360);

  x = ScaleFactor * N * A * (1 + A2 * (X2 + A2 * (X4 + A2 * X6))) + FalseEasting;
  y = ScaleFactor * (M + 0.5 * t * N * A2 * (1 + A2 * (Y2 + A2 * Y4))) + OriginArc + FalseNorthing;
  return errcode();
}

bool TransverseMercator::Footpoint(double y, double& phi1) const {
  const double arc = y - FalseNorthing - OriginArc;
  if (!(std::fabs(arc) < QuarterMeridian)) {
    return false;
  }
  const double mu = arc * InvScaledRadius;
  phi1 = Series(FootCoeffs, mu, SinCosOf(mu));
  return std::fabs(phi1) < HalfPi;
}

errcode TransverseMercator::XYGeo(double x, double y, double& phi, double& lambda) const {
  double phi1 = 0;
  if (!Footpoint(y, phi1)) {
    return errcode(BeyondDomain, Fatal);
  }
  const auto [s, c] = SinCosOf(phi1);
  const double invC = 1 / c;
  const double t = s * invC;
  const double T = t * t;
  const double C = SecondEccSquared * c * c;
  const double Q = (x - FalseEasting) * InvScaledMajor * std::sqrt(1 - EccSquared * s * s);  // over k0 N
  const double Q2 = Q * Q;

  const double P2 = (5 + 3 * T + (1 - 9 * T) * C - 4 * C * C) * (-1.0 / 12);
  const double P4 = (61 + 90 * T + 45 * T * T + (46 - 252 * T - 90 * T * T) * C) * (1.0 / 360);
  phi = phi1 - 0.5 * (1 + C) * t * Q2 * (1 + Q2 * (P2 + Q2 * P4));
  if (phi < -HalfPi || phi > HalfPi) {
    return errcode(BeyondDomain, Fatal);
  }

  const double L2 = (1 + 2 * T + C) * (-1.0 / 6);
  const double L4 = (5 + 28 * T + 24 * T * T + (6 + 8 * T) * C) * (1.0 / 120);
  const double L6 = (61 + 662 * T + 1320 * T * T + 720 * T * T * T) * (1.0 / 5040);
  double longitude = Q * (1 + Q2 * (L2 + Q2 * (L4 + Q2 * L6))) * invC + CentralMeridian;
  if (longitude <= -Pi) {
    longitude += TwoPi;
  }
  if (longitude >= Pi) {
    longitude -= TwoPi;
  }
  lambda = longitude;
  if (longitude < -Pi || longitude > Pi) {
    return errcode(BeyondDomain, Fatal);
  }
  return errcode();
}

errcode TransverseMercator::Scale(double x, double y, double& k) const {
  double phi1 = 0;
  if (!Footpoint(y, phi1)) {
    return errcode(BeyondDomain, Fatal);
  }
  const auto [s, c] = SinCosOf(phi1);
  const double C = SecondEccSquared * c * c;
  const double Q = (x - FalseEasting) * InvScaledMajor * std::sqrt(1 - EccSquared * s * s);  // over k0 N
  const double Q2 = Q * Q;
  k = ScaleFactor * (1 + 0.5 * (1 + C) * Q2 * (1 + (1 + 5 * C) * Q2 * (1.0 / 12)));
  return errcode();
}

}  // namespace latigo
