#include "projection/albers.h"

#include <cmath>

namespace latigo {

namespace {

// The latitude is good when a pass changes it by no more than this, radians; convergence is quadratic.
constexpr double LatitudeTolerance = 1e-7;

// A latitude that needs the tenth pass counts as one that does not converge, even if that pass is good.
constexpr int MaxPasses = 10;

// q of the pole is below 2; beyond it there is no latitude.
constexpr double LargestQ = 2;

}  // namespace

double Albers::MakeConeConstant() const {
  const double s1 = std::sin(NorthParallel);
  if (SouthParallel == NorthParallel) {
    return s1;
  }
  const double m1 = ParallelRatio(NorthParallel);
  const double m2 = ParallelRatio(SouthParallel);
  return (m1 * m1 - m2 * m2) / (Q(std::sin(SouthParallel)) - Q(s1));
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
  const SinCos theta = SinCosOf(ConeConstant * (lambda - CentralMeridian));
  const double rho = Radius(Q(std::sin(phi)));
  x = rho * theta.sin + FalseEasting;
  y = (OriginRadius + FalseNorthing) - rho * theta.cos;
  return errcode();
}

errcode Albers::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double dx = x - FalseEasting;
  const double dy = OriginRadius - (y - FalseNorthing);
  const double theta = std::atan(dx / dy);  // of the quotient: the same for both signs of n
  lambda = theta * InvCone + CentralMeridian;
  const double q = QOfRoot(RootSquared(dx, dy));
  if (std::fabs(q) > LargestQ) {
    return errcode(BeyondDomain, Fatal);
  }
  const double scaledQ = q / (1 - e2());
  SinCos of = {q / 2, CosOfSine(q / 2)};
  phi = std::asin(q / 2);
  for (int pass = 1; pass <= MaxPasses; ++pass) {
    const double W = 1 - e2() * of.sin * of.sin;
    const double change = W / (2 * of.cos) * ((scaledQ + L(of.sin)) * W - of.sin);
    phi += change;
    if (!(std::fabs(change) > LatitudeTolerance)) {
      return pass < MaxPasses ? errcode() : errcode(NoConvergence, Fatal);
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
  // sqrt(C - n q) / m of the first latitude asin(q / 2).
  const double s = q / 2;
  k = std::sqrt(root2 * (1 - e2() * s * s) / ((1 - s) * (1 + s)));
  return errcode();
}

}  // namespace latigo
