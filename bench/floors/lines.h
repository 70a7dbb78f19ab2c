#pragma once

#include "floors/cassini.h"
#include "floors/ellipsoid.h"

namespace bench {

class LineFloor : FloorEllipsoid {
 public:
  explicit LineFloor(const GeodesyParams& p) : FloorEllipsoid(p), arc(e2) {}

  double GCircLL(double phi1, double lambda1, double phi2, double lambda2, double& azimuth) const {
    const double dPhi = phi2 - phi1;
    const double dLambda = lambda2 - lambda1;
    const SinCos m((phi1 + phi2) * 0.5);
    const double S2 = m.sin * m.sin;
    const double C2 = m.cos * m.cos;
    const double eta2 = ep2 * C2;
    const double invQ = 1 / ((1 - eta2) * (1 - eta2));
    const double w2 = 1 - e2 * S2;
    const double N1 = a / std::sqrt(w2);
    const double M1 = N1 * (1 - e2) / w2;
    const double dPhi2 = dPhi * dPhi;
    const double dLambda2 = dLambda * dLambda;
    const double T = S2 / C2;
    const double G = (9 * eta2 * eta2 * T + 1) * (1.0 / 24) * invQ;
    const double E = (1 - 2 * eta2) * (1.0 / 24);
    const double F = (1 - T) * eta2 * (1.0 / 8) * invQ;
    const double P = (1 - (1.0 / 24) * dLambda2 * S2 + G * dPhi2) * (N1 * dLambda * m.cos);
    const double R = std::cos(dLambda * 0.5) * M1 * dPhi * (1 + E * dLambda2 * C2 + F * dPhi2);
    const double D = (eta2 + 1) * (1.0 / 12);
    const double B = (8 * eta2 + 3) * (1.0 / 24) * invQ;
    azimuth = std::atan2(P, R) - dLambda * m.sin * (1 + D * dLambda2 * C2 + B * dPhi2) * 0.5;
    return std::sqrt(P * P + R * R);
  }

  // For two different latitudes.
  double RLineLL(double phi1, double lambda1, double phi2, double lambda2, double& azimuth) const {
    const SinCos p1(phi1);
    const SinCos p2(phi2);
    const double es1 = e * p1.sin;
    const double es2 = e * p2.sin;
    const double dq = 0.5 * std::log((1 - p1.sin) * (1 + p2.sin) / ((1 - p2.sin) * (1 + p1.sin))) +
                      halfE * std::log((1 - es2) * (1 + es1) / ((1 + es2) * (1 - es1)));
    const double dLambda = lambda2 - lambda1;
    azimuth = std::atan2(dLambda, dq);
    return a * std::fabs((arc(phi2, p2.sin, p2.cos) - arc(phi1, p1.sin, p1.cos)) / dq) *
           std::sqrt(dLambda * dLambda + dq * dq);
  }

 private:
  const ArcFloor arc;
  const double ep2 = e2 / (1 - e2);
};

}  // namespace bench
