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
      OriginRadius(ParallelRadius(IsometricLatitude(std::sin(RefLatitude)))),
      SemiMajor(a() / Unit),
      InvCone(1 / ConeConstant) {
  if (ConeConstant == 0) {
    throw errcode(NoUsableProjection, Fatal);
  }
}

double Lambert::PointRadius(double dx, double q) const {
  const double rho = Hypotenuse(dx, q);
  return ConeConstant < 0 ? -rho : rho;
}

errcode Lambert::GeoXY(double& x, double& y, double phi, double lambda) const {
  double rho = 0;
  if (std::fabs(phi) == HalfPi) {
    if (!(phi * ConeConstant > 0)) {
      return errcode(PoleNotShown, Fatal);
    }
  } else {
    rho = ParallelRadius(IsometricLatitude(std::sin(phi)));
  }
  const SinCos theta = SinCosOf((lambda - CentralMeridian) * ConeConstant);
  x = rho * theta.sin + FalseEasting;
  y = (OriginRadius + FalseNorthing) - rho * theta.cos;
  return errcode();
}

errcode Lambert::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double dx = x - FalseEasting;
  const double q = OriginRadius - (y - FalseNorthing);
  const double theta = std::atan(dx / q);  // of the quotient: the same for both signs of n
  lambda = theta * InvCone + CentralMeridian;

  const HalfComplement latitude = Converge(PointT(PointRadius(dx, q)), LatitudeTolerance, MaxPasses);
  phi = latitude.Latitude();
  if (latitude.passes >= MaxPasses || std::isnan(phi)) {
    return errcode(NoConvergence, Fatal);
  }
  return errcode();
}

errcode Lambert::Scale(double x, double y, double& k) const {
  const double q = OriginRadius - (y - FalseNorthing);
  const double rho = PointRadius(x - FalseEasting, q);
  const double pointT = PointT(rho);
  const double t = pointT > 1 ? 1 / pointT : pointT;  // m is the same in both hemispheres
  double u = t;
  for (int pass = 1; pass <= ScalePasses; ++pass) {
    u = LatitudePass(t, u);
  }
  k = ConeConstant * rho / SemiMajor * InvParallelRatio(u);
  return errcode();
}

}  // namespace latigo
