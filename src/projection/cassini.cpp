#include "projection/cassini.h"

#include <cmath>

namespace latigo {

namespace {

double ArcRatio(double e2) {
  return 1 - e2 / 4 - 3 * e2 * e2 / 64 - 5 * e2 * e2 * e2 / 256;
}

// The third flattening, here by the two axes.
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
  const double N = SemiMajor / std::sqrt(1 - e2() * s * s);
  const double A = (lambda - CentralMeridian) * c;
  const double A2 = A * A;
  const double C = SecondEccSquared * c * c;
  const double t = s / c;
  const double T = t * t;
  x = A * (1 - T * A2 * (1.0 / 6) - T * (8 - T + 8 * C) * A2 * A2 * (1.0 / 120)) * N + FalseEasting;
  y = MeridianArc(Arc, phi, of) / Unit - Arc0 + A2 * (0.5 + (5 - T + 6 * C) * A2 * (1.0 / 24)) * t * N + FalseNorthing;
  return errcode();
}

errcode Cassini::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double mu = (Arc0 + y - FalseNorthing) * InvArcRadius;
  const double phi1 = mu + SineSeries(FootCoeffs, Doubled(SinCosOf(mu)));

  const auto [s, c] = SinCosOf(phi1);
  const double w2 = 1 - e2() * s * s;
  const double invC = 1 / c;
  const double t1 = s * invC;
  const double T1 = t1 * t1;
  const double D = (x - FalseEasting) * std::sqrt(w2) / SemiMajor;
  const double D2 = D * D;
  // N1 / R1 is w^2 / (1 - e2).
  phi = phi1 - w2 * t1 * InvOneMinusE2 * D2 * (0.5 - (1 + 3 * T1) * D2 * (1.0 / 24));
  lambda = CentralMeridian + D * (1 - T1 * D2 * (1.0 / 3 - (1 + 3 * T1) * D2 * (1.0 / 15))) * invC;
  return errcode();
}

}  // namespace latigo
