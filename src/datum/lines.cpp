// Lines between two positions on the ellipsoid. The longitude difference is not normalised: its sign and size determine
// the direction, also for differences of more than 180 degrees.
#include <cmath>

#include "datum/ellipsoid.h"

namespace latigo {

// Gauss's mid-latitude formulas (Rapp, Geometric Geodesy, Part I). With t = tan phi_m, eta2 = e'^2 cos^2 phi_m and
// V^2 = 1 + eta2, for a line of length s and mean azimuth alpha:
//     s sin alpha = N dLambda cos phi_m (1 - dLambda^2 sin^2 phi_m / 24 + (1 + eta2 - 9 eta2 t^2) dPhi^2 / (24 V^4))
//     s cos alpha = M dPhi cos(dLambda / 2) (1 + (1 - 2 eta2) dLambda^2 cos^2 phi_m / 24
//                                              + eta2 (1 - t^2) dPhi^2 / (8 V^4))
//     dAlpha = dLambda sin phi_m (1 + (1 + eta2) dLambda^2 cos^2 phi_m / 12 + (3 + 8 eta2) dPhi^2 / (24 V^4))
// Here Q = (1 - eta2)^2 replaces V^4, and 1 + 9 eta2^2 t^2 replaces 1 + eta2 - 9 eta2 t^2. Results differ from the
// published formulas by up to 1.6 cm and 0.041 arc seconds at 100 km and up to 80 degrees of latitude, growing with the
// third and the second power of the length.
double Ellipsoid::GCircLL(double phi1, double lambda1, double phi2, double lambda2, double* az) const {
  const double dPhi = phi2 - phi1;
  const double dLambda = lambda2 - lambda1;
  const double phiM = (phi1 + phi2) * 0.5;
  const double S = std::sin(phiM);
  const double C = std::cos(phiM);
  const double T = (S / C) * (S / C);
  const double eta2 = e2_ / (1 - e2_) * C * C;
  const double Q = (1 - eta2) * (1 - eta2);
  const double w = std::sqrt(1 - e2_ * S * S);
  const double N = a_ / w;
  const double M = a_ * (1 - e2_) / (w * w * w);
  const double dPhi2 = dPhi * dPhi;
  const double dLambda2 = dLambda * dLambda;

  const double G = (9 * eta2 * eta2 * T + 1) / (24 * Q);
  const double E = (1 - 2 * eta2) / 24;
  const double F = (1 - T) * eta2 / (8 * Q);
  // East and north components of the line at its middle: s sin alpha and s cos alpha. The constant is 1/24.
  const double P = (1 - 0.041666666666666664 * dLambda2 * S * S + G * dPhi2) * (N * dLambda * C);
  const double R = std::cos(dLambda * 0.5) * M * dPhi * (1 + E * dLambda2 * C * C + F * dPhi2);
  if (az != nullptr) {
    const double D = (eta2 + 1) / 12;
    const double B = (8 * eta2 + 3) / (24 * Q);
    *az = std::atan2(P, R) - dLambda * S * (1 + D * dLambda2 * C * C + B * dPhi2) * 0.5;
  }
  return std::hypot(P, R);
}

// Snyder, USGS PP 1395, chapter 7: tan az = dLambda / dq, with q the isometric latitude, the y / a of (7-7); the length
// is the meridian arc between the parallels divided by cos az. Since exp(2 q) = (1 + s) / (1 - s) ((1 - e s) / (1 + e
// s))^e with s = sin phi, one logarithm suffices for both latitudes.
double Ellipsoid::RLineLL(double phi1, double lambda1, double phi2, double lambda2, double* az) const {
  const double s1 = std::sin(phi1);
  const double s2 = std::sin(phi2);
  const double A = ((1 - e_ * s2) / (1 + e_ * s2)) * ((1 + e_ * s1) / (1 - e_ * s1));
  const double Bq = (1 - s1) * ((1 + s2) / (1 - s2)) / (1 + s1);
  const double dq = 0.5 * std::log(std::pow(A, e_) * Bq);  // difference of the isometric latitudes
  const double azimuth = std::atan2(lambda2 - lambda1, dq);
  if (az != nullptr) {
    *az = azimuth;
  }
  if (phi1 == phi2) {
    return std::fabs(a_ / std::sqrt(1 - e2_ * s1 * s1) * std::cos(phi1) * (lambda1 - lambda2));
  }
  return std::fabs((MeridianArc(phi2) - MeridianArc(phi1)) / std::cos(azimuth));
}

}  // namespace latigo
