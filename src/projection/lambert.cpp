#include "projection/lambert.h"

#include <cmath>

namespace latigo {

namespace {

// The iteration ends when it changes the latitude by at most this, radians.
constexpr double LatitudeTolerance = 1e-10;

// A latitude that needs the tenth iteration fails, even if that one meets the tolerance.
constexpr int MaxIterations = 10;

// The scale factor uses this number of iterations, without a convergence test.
constexpr int ScaleIterations = 3;

}  // namespace

double Lambert::MakeConeConstant() const {
  if (SouthParallel == NorthParallel) {
    return std::sin(NorthParallel);  // the limit of (15-8)
  }
  return std::log(ParallelRatio(NorthParallel) / ParallelRatio(SouthParallel)) /
         std::log(IsometricT(NorthParallel) / IsometricT(SouthParallel));  // (15-8)
}

// (15-10) with the factors a k0 of (15-7).
double Lambert::MakeConeRadius() const {
  const double n = ConeConstant;
  return a() / Unit * ScaleFactor * ParallelRatio(NorthParallel) / (n * std::pow(IsometricT(NorthParallel), n));
}

Lambert::Lambert(const GeodesyParams& params)
    : Projection(params),
      ConeConstant(MakeConeConstant()),
      ConeRadius(MakeConeRadius()),
      OriginRadius(ParallelRadius(IsometricLatitude(std::sin(RefLatitude)))),  // (15-7a)
      SemiMajor(a() / Unit),
      InvCone(1 / ConeConstant) {
  if (ConeConstant == 0) {
    throw errcode(NoUsableProjection, Fatal);
  }
}

double Lambert::PointRadius(double dx, double dy) const {
  const double rho = Hypotenuse(dx, dy);
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
  const SinCos theta = SinCosOf((lambda - CentralMeridian) * ConeConstant);  // (14-4)
  x = rho * theta.sin + FalseEasting;                                        // (14-1)
  y = (OriginRadius + FalseNorthing) - rho * theta.cos;                      // (14-2)
  return errcode();
}

errcode Lambert::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double dx = x - FalseEasting;
  const double dy = OriginRadius - (y - FalseNorthing);
  const double theta = std::atan(dx / dy);     // (14-11); a quotient, so that no signs change for a negative n
  lambda = theta * InvCone + CentralMeridian;  // (14-9)

  const HalfComplement latitude = Converge(PointT(PointRadius(dx, dy)), LatitudeTolerance, MaxIterations);  // (7-9)
  phi = latitude.Latitude();
  if (latitude.iterations >= MaxIterations || std::isnan(phi)) {
    return errcode(NoConvergence, Fatal);
  }
  return errcode();
}

errcode Lambert::Scale(double x, double y, double& k) const {
  const double rho = PointRadius(x - FalseEasting, OriginRadius - (y - FalseNorthing));
  const double pointT = PointT(rho);
  const double t = pointT > 1 ? 1 / pointT : pointT;  // m is the same in both hemispheres
  double u = t;
  for (int iteration = 1; iteration <= ScaleIterations; ++iteration) {
    u = LatitudeIteration(t, u);
  }
  k = ConeConstant * rho / SemiMajor * InvParallelRatio(u);  // (14-16): rho n / (a m)
  return errcode();
}

}  // namespace latigo
