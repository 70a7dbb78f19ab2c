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

double Albers::L(double s) const {
  const double es = e() * s;
  return std::log((1 - es) / (1 + es)) / (2 * e());
}

double Albers::Q(double s) const {
  return (1 - e2()) * (s / (1 - e2() * s * s) - L(s));
}

double Albers::MakeConeConstant() const {
  const double s1 = std::sin(NorthParallel);
  if (SouthParallel == NorthParallel) {
    return s1;
  }
  const double m1 = ParallelRatio(NorthParallel);
  const double m2 = ParallelRatio(SouthParallel);
  return (m1 * m1 - m2 * m2) / (Q(std::sin(SouthParallel)) - Q(s1));
}

double Albers::Radius(double q) const {
  return SemiMajor * std::sqrt(ConeRoot - ConeConstant * q) / ConeConstant;
}

double Albers::QOfRadius(double rho) const {
  const double ratio = rho * ConeConstant / SemiMajor;
  return (ConeRoot - ratio * ratio) / ConeConstant;
}

Albers::Albers(const GeodesyParams& params)
    : Projection(params),
      SemiMajor(a() / Unit),
      ConeConstant(MakeConeConstant()),
      ConeRoot(ParallelRatio(NorthParallel) * ParallelRatio(NorthParallel) + ConeConstant * Q(std::sin(NorthParallel))),
      OriginRadius(Radius(Q(std::sin(RefLatitude)))) {
  if (ConeConstant == 0) {
    throw errcode(NoUsableProjection, Fatal);
  }
}

errcode Albers::GeoXY(double& x, double& y, double phi, double lambda) const {
  const double theta = ConeConstant * (lambda - CentralMeridian);
  const double rho = Radius(Q(std::sin(phi)));
  x = rho * std::sin(theta) + FalseEasting;
  y = (OriginRadius + FalseNorthing) - rho * std::cos(theta);
  return errcode();
}

errcode Albers::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double dx = x - FalseEasting;
  const double dy = OriginRadius - (y - FalseNorthing);
  const double theta = std::atan(dx / dy);  // of the quotient: the same for both signs of n
  lambda = theta / ConeConstant + CentralMeridian;
  const double q = QOfRadius(std::hypot(dx, dy));
  if (std::fabs(q) > LargestQ) {
    return errcode(BeyondDomain, Fatal);
  }
  double latitude = std::asin(q / 2);
  for (int pass = 1; pass <= MaxPasses; ++pass) {
    const double s = std::sin(latitude);
    const double W = 1 - e2() * s * s;
    const double change = W * W / (2 * std::cos(latitude)) * (q / (1 - e2()) - s / W + L(s));
    latitude += change;
    if (!(std::fabs(change) > LatitudeTolerance)) {
      phi = latitude;
      return pass < MaxPasses ? errcode() : errcode(NoConvergence, Fatal);
    }
  }
  phi = latitude;
  return errcode(NoConvergence, Fatal);
}

errcode Albers::Scale(double x, double y, double& k) const {
  const double q = QOfRadius(std::hypot(x - FalseEasting, OriginRadius - (y - FalseNorthing)));
  if (std::fabs(q) > LargestQ) {
    return errcode(BeyondDomain, Fatal);
  }
  k = std::sqrt(ConeRoot - ConeConstant * q) / ParallelRatio(std::asin(q / 2));
  return errcode();
}

}  // namespace latigo
