#include "projection/cassini.h"

#include <cmath>

namespace latigo {

namespace {

// The divisor of (7-19) for a semi-major axis of 1.
double ArcRatio(double e2) {
  return 1 - e2 / 4 - 3 * e2 * e2 / 64 - 5 * e2 * e2 * e2 / 256;
}

// e1 (3-24), which is (a - b) / (a + b).
double ThirdFlattening(double a, double f) {
  const double b = a * (1 - f);
  return (a - b) / (a + b);
}

}  // namespace

Cassini::Cassini(const GeodesyParams& params)
    : Projection(params),
      Arc(MeridianArcTerms()),
      Arc0(MeridianArc(Arc, RefLatitude, SinCosOf(RefLatitude)) / Unit),
      SecondEccSquared(e2() / (1 - e2())),
      SemiMajor(a() / Unit),
      InvArcRadius(Unit / (a() * ArcRatio(e2()))),
      InvOneMinusE2(1 / (1 - e2())),
      FootCoeffs(FootpointSeries(ThirdFlattening(a(), f()))) {}

errcode Cassini::GeoXY(double& x, double& y, double phi, double lambda) const {
  const SinCos of = SinCosOf(phi);
  const auto [s, c] = of;
  const double N = SemiMajor / std::sqrt(1 - e2() * s * s);  // (4-20)
  const double A = (lambda - CentralMeridian) * c;           // (8-15)
  const double A2 = A * A;
  const double C = SecondEccSquared * c * c;  // (8-14)
  const double t = s / c;
  const double T = t * t;  // (8-13)
  // (13-7) and (13-8)
  x = A * (1 - T * A2 * (1.0 / 6) - T * (8 - T + 8 * C) * A2 * A2 * (1.0 / 120)) * N + FalseEasting;
  y = MeridianArc(Arc, phi, of) / Unit - Arc0 + A2 * (0.5 + (5 - T + 6 * C) * A2 * (1.0 / 24)) * t * N + FalseNorthing;
  return errcode();
}

errcode Cassini::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double mu = (Arc0 + y - FalseNorthing) * InvArcRadius;             // (13-12), (7-19)
  const double phi1 = mu + SineSeries(FootCoeffs, Doubled(SinCosOf(mu)));  // (3-26)

  const auto [s1, c1] = SinCosOf(phi1);
  const double w2 = 1 - e2() * s1 * s1;
  const double invC1 = 1 / c1;
  const double t1 = s1 * invC1;
  const double T1 = t1 * t1;                                        // (8-22)
  const double D = (x - FalseEasting) * std::sqrt(w2) / SemiMajor;  // (13-13), with N1 (8-23)
  const double D2 = D * D;
  // (13-10), where N1 / R1 = w2 / (1 - e2); and (13-11)
  phi = phi1 - w2 * t1 * InvOneMinusE2 * D2 * (0.5 - (1 + 3 * T1) * D2 * (1.0 / 24));
  lambda = CentralMeridian + D * (1 - T1 * D2 * (1.0 / 3 - (1 + 3 * T1) * D2 * (1.0 / 15))) * invC1;
  return errcode();
}

}  // namespace latigo
