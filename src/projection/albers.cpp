#include "projection/albers.h"

#include <cmath>

namespace latigo {

namespace {

// The iteration ends when it changes the latitude by at most this, radians; convergence is quadratic.
constexpr double LatitudeTolerance = 1e-7;

// A latitude that needs the tenth iteration fails, even if that one meets the tolerance.
constexpr int MaxIterations = 10;

// q of the pole is below 2; larger values have no latitude.
constexpr double LargestQ = 2;

}  // namespace

double Albers::MakeConeConstant() const {
  const double s1 = std::sin(NorthParallel);
  if (SouthParallel == NorthParallel) {
    return s1;
  }
  const double m1 = ParallelRatio(NorthParallel);
  const double m2 = ParallelRatio(SouthParallel);
  return (m1 * m1 - m2 * m2) / (Q(std::sin(SouthParallel)) - Q(s1));  // (14-14)
}

Albers::Albers(const GeodesyParams& params)
    : Projection(params),
      InvTwoE(1 / (2 * e())),
      SemiMajor(a() / Unit),
      ConeConstant(MakeConeConstant()),
      InvCone(1 / ConeConstant),
      MajorOverCone(SemiMajor / ConeConstant),
      InvMajorOverCone2(1 / (MajorOverCone * MajorOverCone)),
      ConeRoot(ParallelRatio(NorthParallel) * ParallelRatio(NorthParallel) + ConeConstant * Q(std::sin(NorthParallel))),
      OriginRadius(Radius(Q(std::sin(RefLatitude)))) {
  if (ConeConstant == 0) {
    throw errcode(NoUsableProjection, Fatal);
  }
}

errcode Albers::GeoXY(double& x, double& y, double phi, double lambda) const {
  const SinCos theta = SinCosOf(ConeConstant * (lambda - CentralMeridian));  // (14-4)
  const double rho = Radius(Q(std::sin(phi)));                               // (14-12)
  x = rho * theta.sin + FalseEasting;                                        // (14-1)
  y = (OriginRadius + FalseNorthing) - rho * theta.cos;                      // (14-2)
  return errcode();
}

// Book (3-16), for phi from q, starting at asin(q / 2):
//   change = (1 - e2 s^2)^2 / (2 cos phi) (q / (1 - e2) - s / (1 - e2 s^2) + L), s = sin phi.
// Here W = 1 - e2 s^2, and one factor W goes into the bracket: W / (2 cos phi) ((q / (1 - e2) + L) W - s).
errcode Albers::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double dx = x - FalseEasting;
  const double dy = OriginRadius - (y - FalseNorthing);
  const double theta = std::atan(dx / dy);        // (14-11); a quotient, so that no signs change for a negative n
  lambda = theta * InvCone + CentralMeridian;     // (14-9)
  const double q = QOfRoot(RootSquared(dx, dy));  // (14-19)
  if (std::fabs(q) > LargestQ) {
    return errcode(BeyondDomain, Fatal);
  }
  const double scaledQ = q / (1 - e2());
  SinCos of = {q / 2, CosOfSine(q / 2)};
  phi = std::asin(q / 2);
  for (int iteration = 1; iteration <= MaxIterations; ++iteration) {
    const double W = 1 - e2() * of.sin * of.sin;
    const double change = W / (2 * of.cos) * ((scaledQ + L(of.sin)) * W - of.sin);  // (3-16)
    phi += change;
    if (!(std::fabs(change) > LatitudeTolerance)) {
      return iteration < MaxIterations ? errcode() : errcode(NoConvergence, Fatal);
    }
    of = SinCosOf(phi);
  }
  return errcode(NoConvergence, Fatal);
}

errcode Albers::Scale(double x, double y, double& k) const {
  const double root2 = RootSquared(x - FalseEasting, OriginRadius - (y - FalseNorthing));
  const double q = QOfRoot(root2);
  if (std::fabs(q) > LargestQ) {
    return errcode(BeyondDomain, Fatal);
  }
  // (14-16), sqrt(C - n q) / m, of the starting latitude asin(q / 2) instead of phi.
  const double s = q / 2;
  k = std::sqrt(root2 * (1 - e2() * s * s) / ((1 - s) * (1 + s)));
  return errcode();
}

}  // namespace latigo
