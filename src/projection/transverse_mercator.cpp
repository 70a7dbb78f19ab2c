#include "projection/transverse_mercator.h"

#include <cmath>

namespace latigo {

namespace {

// G / a = (1 - n) (1 - n^2) (1 + 9/4 n^2 + 225/64 n^4), Helmert. 0.015625 is 1/64 exactly.
double RectifyingRatio(double n) {
  const double n2 = n * n;
  return (1 - n) * (1 - n2) * (1 + 2.25 * n2 + 225 * 0.015625 * n2 * n2);
}

}  // namespace

// With s = sin u and c = cos u:
//     sin 2u = s c   2
//     sin 4u = s c  (8 c^2   -   4)
//     sin 6u = s c  (32 c^4  -  32 c^2  +   6)
//     sin 8u = s c  (128 c^6 - 192 c^4  +  80 c^2 - 8)
// so the coefficient of each power of c^2 is the sum of a column.
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

// Book      here    meaning
// A         A       (lambda - lambda0) cos phi                             (8-15)
// T, C      T, C    tan^2 phi, e'^2 cos^2 phi                              (8-13), (8-14)
// M         M       meridian arc, by Helmert's series in n instead of (3-21)
// C and T C replace the book's e'^2 = C + T C: 14 C - 58 T C = 72 C - 58 e'^2 and 270 C - 330 T C = 600 C - 330 e'^2.
// The term X6 in A^7 is Redfearn's; (8-9) ends with A^5.
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
  const double T = t * t;                     // (8-13)
  const double C = SecondEccSquared * c * c;  // (8-14)
  const double A = d * c;                     // (8-15)
  const double A2 = A * A;
  const double N = SemiMajor / std::sqrt(1 - EccSquared * s * s);  // (4-20)
  const double M = RectifyingRadius * Series(ArcCoeffs, phi, of);

  const double X2 = (1 - T + C) * (1.0 / 6);                                    // (8-9), A^3
  const double X4 = (5 - 18 * T + T * T + (14 - 58 * T) * C) * (1.0 / 120);     // (8-9), A^5
  const double X6 = (61 - 479 * T + 179 * T * T - T * T * T) * (1.0 / 5040);    // Redfearn, A^7
  const double Y2 = (5 - T + (9 + 4 * C) * C) * (1.0 / 12);                     // (8-10), A^4
  const double Y4 = (61 - 58 * T + T * T + (270 - 330 * T) * C) * (1.0 / 360);  // (8-10), A^6

  x = ScaleFactor * N * A * (1 + A2 * (X2 + A2 * (X4 + A2 * X6))) + FalseEasting;                    // (8-9)
  y = ScaleFactor * (M + 0.5 * t * N * A2 * (1 + A2 * (Y2 + A2 * Y4))) + OriginArc + FalseNorthing;  // (8-10)
  return errcode();
}

bool TransverseMercator::Footpoint(double y, double& phi1) const {
  const double arc = y - FalseNorthing - OriginArc;  // k0 M, (8-20)
  if (!(std::fabs(arc) < QuarterMeridian)) {
    return false;
  }
  const double mu = arc * InvScaledRadius;      // (7-19), with G for the book's series in e2
  phi1 = Series(FootCoeffs, mu, SinCosOf(mu));  // (3-26)
  return std::fabs(phi1) < HalfPi;
}

// Book             here     meaning
// phi1             phi1     footpoint latitude
// T1, C1, N1, D    the same                                                (8-21) to (8-23), (8-25)
// N1 / R1          1 + C1   since (1 - e2) (1 + C1) = 1 - e2 sin^2 phi1
// With C1 and T1 C1 for the book's e'^2 = C1 + T1 C1, as in GeoXY, Redfearn's series differs from the book's in
//   P4   - 90 T1^2 C1 where (8-17) has - 3 C1^2
//   L4   nothing where (8-18) has - 3 C1^2
//   L6   the whole term in D^7, where (8-18) ends with D^5; it is added here, where Redfearn subtracts it. The
//        sign makes up most of the round-trip error: 0.7 mm within 3 degrees of the central meridian, 3.3 m within 10
errcode TransverseMercator::XYGeo(double x, double y, double& phi, double& lambda) const {
  double phi1 = 0;
  if (!Footpoint(y, phi1)) {
    return errcode(BeyondDomain, Fatal);
  }
  const auto [s1, c1] = SinCosOf(phi1);
  const double invC1 = 1 / c1;
  const double t1 = s1 * invC1;
  const double T1 = t1 * t1;                                                                   // (8-22)
  const double C1 = SecondEccSquared * c1 * c1;                                                // (8-21)
  const double D = (x - FalseEasting) * InvScaledMajor * std::sqrt(1 - EccSquared * s1 * s1);  // (8-25), (8-23)
  const double D2 = D * D;

  const double P2 = (5 + 3 * T1 + (1 - 9 * T1) * C1 - 4 * C1 * C1) * (-1.0 / 12);                       // (8-17), D^4
  const double P4 = (61 + 90 * T1 + 45 * T1 * T1 + (46 - 252 * T1 - 90 * T1 * T1) * C1) * (1.0 / 360);  // Redfearn, D^6
  phi = phi1 - 0.5 * (1 + C1) * t1 * D2 * (1 + D2 * (P2 + D2 * P4));                                    // (8-17)
  if (phi < -HalfPi || phi > HalfPi) {
    return errcode(BeyondDomain, Fatal);
  }

  const double L2 = (1 + 2 * T1 + C1) * (-1.0 / 6);                                        // (8-18), D^3
  const double L4 = (5 + 28 * T1 + 24 * T1 * T1 + (6 + 8 * T1) * C1) * (1.0 / 120);        // Redfearn, D^5
  const double L6 = (61 + 662 * T1 + 1320 * T1 * T1 + 720 * T1 * T1 * T1) * (1.0 / 5040);  // minus Redfearn's, D^7
  // (8-18)
  double longitude = D * (1 + D2 * (L2 + D2 * (L4 + D2 * L6))) * invC1 + CentralMeridian;
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

// k by the footpoint: (8-16) in D is k0 (1 + (1 + C1) D^2 / 2); the term in D^4 is (1 + C1) (1 + 5 C1) / 24.
errcode TransverseMercator::Scale(double x, double y, double& k) const {
  double phi1 = 0;
  if (!Footpoint(y, phi1)) {
    return errcode(BeyondDomain, Fatal);
  }
  const auto [s1, c1] = SinCosOf(phi1);
  const double C1 = SecondEccSquared * c1 * c1;                                                // (8-21)
  const double D = (x - FalseEasting) * InvScaledMajor * std::sqrt(1 - EccSquared * s1 * s1);  // (8-25), (8-23)
  const double D2 = D * D;
  k = ScaleFactor * (1 + 0.5 * (1 + C1) * D2 * (1 + (1 + 5 * C1) * D2 * (1.0 / 12)));
  return errcode();
}

}  // namespace latigo
