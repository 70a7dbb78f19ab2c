#include "projection/lambert.h"

#include <cmath>

namespace latigo {

namespace {

// The latitude is good when a pass changes it by no more than this, radians.
constexpr double LatitudeTolerance = 1e-10;

// A latitude that needs the tenth pass counts as one that does not converge, even if that pass is good.
constexpr int MaxPasses = 10;

// The scale factor needs the latitude less exactly, and takes just so many passes.
constexpr int ScalePasses = 3;

}  // namespace

double Lambert::MakeConeConstant() const {
  if (SouthParallel == NorthParallel) {
    return std::sin(NorthParallel);
  }
  return std::log(ParallelRatio(NorthParallel) / ParallelRatio(SouthParallel)) /
         std::log(IsometricT(NorthParallel) / IsometricT(SouthParallel));
}

double Lambert::MakeConeRadius() const {
  const double n = ConeConstant;
  return a() / Unit * ScaleFactor * ParallelRatio(NorthParallel) / (n * std::pow(IsometricT(NorthParallel), n));
}

Lambert::Lambert(const GeodesyParams& params)
    : Projection(params),
      ConeConstant(MakeConeConstant()),
      ConeRadius(MakeConeRadius()),
      OriginRadius(ConeRadius * std::pow(IsometricT(RefLatitude), ConeConstant)),
      SemiMajor(a() / Unit),
      InvCone(1 / ConeConstant) {
  if (ConeConstant == 0) {
    throw errcode(NoUsableProjection, Fatal);
  }
}

double Lambert::PolarRadius(double dx, double q) const {
  const double rho = std::hypot(dx, q);
  return ConeConstant < 0 ? -rho : rho;
}

errcode Lambert::GeoXY(double& x, double& y, double phi, double lambda) const {
  const double n = ConeConstant;
  const double theta = (lambda - CentralMeridian) * n;
  double rho = 0;
  if (std::fabs(phi) == HalfPi) {
    if (!(phi * n > 0)) {
      return errcode(PoleNotShown, Fatal);
    }
  } else {
    rho = ConeRadius * std::pow(IsometricT(phi), n);
  }
  x = rho * std::sin(theta) + FalseEasting;
  y = (OriginRadius + FalseNorthing) - rho * std::cos(theta);
  return errcode();
}

errcode Lambert::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double dx = x - FalseEasting;
  const double q = OriginRadius - (y - FalseNorthing);
  const double rho = PolarRadius(dx, q);
  const double theta = std::atan(dx / q);  // of the quotient: the same for both signs of n
  lambda = theta / ConeConstant + CentralMeridian;

  const double t = std::pow(rho / ConeRadius, InvCone);
  double latitude = HalfPi - 2 * std::atan(t);
  for (int pass = 1; pass <= MaxPasses; ++pass) {
    const double next = LatitudePass(t, std::sin(latitude));
    const double change = std::fabs(next - latitude);
    latitude = next;
    if (change <= LatitudeTolerance && pass < MaxPasses) {
      phi = latitude;
      return errcode();
    }
  }
  phi = latitude;
  return errcode(NoConvergence, Fatal);
}

errcode Lambert::Scale(double x, double y, double& k) const {
  const double q = OriginRadius - (y - FalseNorthing);
  const double rho = PolarRadius(x - FalseEasting, q);
  const double t = std::pow(rho / ConeRadius, InvCone);
  double s = std::sin(HalfPi - 2 * std::atan(t));
  for (int pass = 1; pass <= ScalePasses; ++pass) {
    s = std::sin(LatitudePass(t, s));
  }
  const double m = std::sqrt((1 - s * s) / (1 - e2() * s * s));
  k = ConeConstant * rho / (SemiMajor * m);
  return errcode();
}

}  // namespace latigo
