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
      Arc0(MeridianArc(RefLatitude) / Unit),
      SecondEccSquared(e2() / (1 - e2())),
      ArcRadius(a() * ArcRatio(e2())),
      FootCoeffs(FootpointSeries(ThirdFlattening(a(), f()))) {}

errcode Cassini::GeoXY(double& x, double& y, double phi, double lambda) const {
  const double s = std::sin(phi);
  const double c = std::cos(phi);
  const double N = a() / std::sqrt(1 - e2() * s * s) / Unit;
  const double A = (lambda - CentralMeridian) * c;
  const double A2 = A * A;
  const double C = SecondEccSquared * c * c;
  const double t = s / c;
  const double T = t * t;
  x = (A - T * A2 * A / 6 - T * (8 - T + 8 * C) * A2 * A2 * A / 120) * N + FalseEasting;
  y = MeridianArc(phi) / Unit - Arc0 + (A2 / 2 + (5 - T + 6 * C) * A2 * A2 / 24) * t * N + FalseNorthing;
  return errcode();
}

errcode Cassini::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double M1 = (Arc0 + y - FalseNorthing) * Unit;
  const double mu = M1 / ArcRadius;
  const auto& [B2, B4, B6, B8] = FootCoeffs;
  const double phi1 =
      mu + B2 * std::sin(2 * mu) + B4 * std::sin(4 * mu) + B6 * std::sin(6 * mu) + B8 * std::sin(8 * mu);

  const double s = std::sin(phi1);
  const double c = std::cos(phi1);
  const double w = std::sqrt(1 - e2() * s * s);
  const double N1 = a() / w;
  const double R1 = a() * (1 - e2()) / (w * w * w);
  const double t1 = s / c;
  const double T1 = t1 * t1;
  const double D = (x - FalseEasting) * Unit / N1;
  const double D2 = D * D;
  phi = phi1 - (N1 * t1 / R1) * (D2 / 2 - (1 + 3 * T1) * D2 * D2 / 24);
  lambda = CentralMeridian + (D - T1 * D2 * D / 3 + (1 + 3 * T1) * T1 * D2 * D2 * D / 15) / c;
  return errcode();
}

}  // namespace latigo
