#include "projection/azimuth_eq_dist.h"

#include <algorithm>
#include <cmath>

namespace latigo {

namespace {

// An origin within this of a pole is the pole, radians.
constexpr double PoleTolerance = 1e-6;

// Computed sines above this may be 1, less a few units in the last place of rounding.
constexpr double NearlyOne = 1 - 1e-15;

// The reciprocals of shorter distances overflow.
constexpr double ShortestInverted = 1e-300;

}  // namespace

AzimuthEqDist::AzimuthEqDist(const GeodesyParams& params)
    : Projection(params),
      SinLat0(std::sin(RefLatitude)),
      CosLat0(std::cos(RefLatitude)),
      N0(PrimeVerticalRadius(RefLatitude) / Unit),
      SecondEcc(e() / std::sqrt(1 - e2())),
      G(SecondEcc * SinLat0),
      InvN0(1 / N0),
      InvOneMinusE2(1 / (1 - e2())),
      AFactor(-e2() * InvOneMinusE2 * CosLat0 * CosLat0),
      BFactor(3 * e2() * InvOneMinusE2 * SinLat0 * CosLat0),
      OriginTerm(e2() * N0 * Unit / a() * SinLat0),
      NorthPole(std::fabs(RefLatitude - HalfPi) < PoleTolerance),
      SouthPole(std::fabs(RefLatitude + HalfPi) < PoleTolerance) {}

// Book, with phi1 for phi0:
//     tan psi = (1 - e2) tan phi + e2 N0 sin phi0 / (N cos phi)
//     tan Az  = sin(lambda - lambda0) / (cos phi0 tan psi - sin phi0 cos(lambda - lambda0))
//     sin s   = sin(lambda - lambda0) cos psi / sin Az, or cos phi0 sin psi - sin phi0 cos psi on the central meridian
//     G = e sin phi0 / sqrt(1 - e2), H = e cos phi0 cos Az / sqrt(1 - e2)
//     c = N0 s (1 - s^2 H^2 (1 - H^2) / 6 + s^3 G H (1 - 2 H^2) / 8 + s^4 (H^2 (4 - 7 H^2) - 3 G^2 (1 - 7 H^2)) / 120
//               - s^5 G H / 48)
//     x = c sin Az, y = c cos Az
// Here east and north are numerator and denominator of tan Az, and h = sqrt(east^2 + north^2), so that sin Az is east /
// h and sin s is cos psi h: one form for both cases of the book, without the quotient of two small sines.
errcode AzimuthEqDist::GeoXY(double& x, double& y, double phi, double lambda) const {
  const auto [sinD, cosD] = SinCosOf(lambda - CentralMeridian);
  const auto [sinPhi, cosPhi] = SinCosOf(phi);
  const double w = std::sqrt(1 - e2() * sinPhi * sinPhi);  // N0 / N(phi) is N0 Unit w / a
  const double tanPsi = ((1 - e2()) * sinPhi + OriginTerm * w) / cosPhi;
  const double east = sinD;
  const double north = CosLat0 * tanPsi - SinLat0 * cosD;
  const double h = std::sqrt(east * east + north * north);
  if (h == 0) {
    x = FalseEasting;
    y = FalseNorthing;
    return errcode();
  }
  const double invH = 1 / h;
  const double sinAz = east * invH;
  const double cosAz = north * invH;
  const double cosPsi = 1 / std::sqrt(1 + tanPsi * tanPsi);
  double sinS = std::min(cosPsi * h, 1.0);
  if (sinS > NearlyOne) {
    const double psi = std::atan(tanPsi);
    const double published = east == 0 ? CosLat0 * std::sin(psi) - SinLat0 * std::cos(psi)
                                       : std::cos(psi) * east / std::sin(std::atan2(east, north));
    sinS = std::fabs(published) == 1 ? 1 : sinS;
  }
  const double s = std::asin(sinS);  // angular distance
  const double H = SecondEcc * CosLat0 * cosAz;
  const double H2 = H * H;
  const double GH = G * H;
  const double s2 = s * s;
  const double c =
      N0 * s *
      (1 - s2 * H2 * (1 - H2) * (1.0 / 6) + s2 * s * (1.0 / 8) * GH * (1 - 2 * H2) +
       s2 * s2 * (1.0 / 120) * (H2 * (4 - 7 * H2) - 3 * G * G * (1 - 7 * H2)) - s2 * s2 * s * (1.0 / 48) * GH);
  x = c * sinAz + FalseEasting;
  y = c * cosAz + FalseNorthing;
  return errcode();
}

// Book, with phi1 for phi0:
//     A = -e2 cos^2 phi0 cos^2 Az / (1 - e2), B = 3 e2 (1 - A) sin phi0 cos phi0 cos Az / (1 - e2), D = c / N0
//     E = D - A (1 + A) D^3 / 6 - B (1 + 3 A) D^4 / 24, F = 1 - A E^2 / 2 - B E^3 / 6
//     sin psi = sin phi0 cos E + cos phi0 sin E cos Az
//     sin(lambda - lambda0) = sin Az sin E / cos psi
//     tan phi = (1 - e2 F sin phi0 / sin psi) tan psi / (1 - e2)
// Here tan phi = (sin psi - e2 F sin phi0) / cos psi / (1 - e2), which is also defined at psi = 0.
errcode AzimuthEqDist::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double dx = x - FalseEasting;
  const double dy = y - FalseNorthing;
  if (dx == 0 && dy == 0) {
    phi = RefLatitude;
    lambda = CentralMeridian;
    return errcode();
  }
  const double c = Hypotenuse(dx, dy);
  const double invC = 1 / c;
  const double sinAz = c < ShortestInverted ? dx / c : dx * invC;
  const double cosAz = c < ShortestInverted ? dy / c : dy * invC;
  const double A = AFactor * cosAz * cosAz;
  const double B = BFactor * (1 - A) * cosAz;
  const double D = c * InvN0;
  const double D3 = D * D * D;
  const double E = D - A * (1 + A) * D3 * (1.0 / 6) - B * (1 + 3 * A) * D3 * D * (1.0 / 24);
  const double F = 1 - A * E * E / 2 - B * E * E * E * (1.0 / 6);
  const auto [sinE, cosE] = SinCosOf(E);
  const double sinPsi = SinLat0 * cosE + CosLat0 * sinE * cosAz;
  const double invCosPsi = 1 / CosOfSine(sinPsi);
  if (NorthPole) {
    lambda = std::atan2(dx, -dy) + CentralMeridian;
  } else if (SouthPole) {
    lambda = std::atan2(dx, dy) + CentralMeridian;
  } else {
    double sinD = sinAz * sinE * invCosPsi;
    if (std::fabs(sinD) > NearlyOne) {
      const double published = std::sin(std::atan2(dx, dy)) * sinE / std::cos(ArcSine(sinPsi));
      sinD = std::fabs(published) == 1 ? published : sinD;
    }
    lambda = NormalizeLongitude(ArcSine(sinD) + CentralMeridian);
  }
  phi = std::atan((sinPsi - e2() * F * SinLat0) * invCosPsi * InvOneMinusE2);
  return errcode();
}

}  // namespace latigo
