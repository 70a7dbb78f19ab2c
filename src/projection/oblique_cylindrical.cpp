#include "projection/oblique_cylindrical.h"

#include <cmath>

namespace latigo {

namespace {

// The latitude is good when a pass changes it by no more than this, radians.
constexpr double LatitudeTolerance = 1e-7;

// Three to four passes are the rule; the bound only ends what would never end on an ellipsoid far from the earth's.
constexpr int MaxPasses = 1000;

// L(w): the isometric latitude of the sphere.
double SphereIsometric(double w) {
  return std::log(std::tan(w / 2 + HalfPi / 2));
}

// The latitude of an isometric latitude of the sphere.
double SphereLatitude(double q) {
  return 2 * std::atan(std::exp(q)) - HalfPi;
}

}  // namespace

// The ellipsoidal term L(asin(e sin phi)) is the inverse hyperbolic tangent of e sin phi.
ObliqueCylindrical::ObliqueCylindrical(const GeodesyParams& params)
    : Projection(params),
      Sphere(*this, RefLatitude),
      Alpha(Sphere.exponent),
      SinB0(std::sin(Sphere.chi0)),
      CosB0(std::cos(Sphere.chi0)),
      KConst(SphereIsometric(Sphere.chi0) - Alpha * SphereIsometric(RefLatitude) +
             Alpha * e() * std::atanh(e() * std::sin(RefLatitude))),
      Radius(Sphere.radius * ScaleFactor / Unit) {}

errcode ObliqueCylindrical::GeoXY(double& x, double& y, double phi, double lambda) const {
  const double l = Alpha * (lambda - CentralMeridian);
  const double S = Alpha * SphereIsometric(phi) - Alpha * e() * std::atanh(e() * std::sin(phi)) + KConst;
  const double b = SphereLatitude(S);
  const double cosB = std::cos(b);
  // Latitude and longitude in the oblique system.
  const double bBar = std::asin(std::sin(b) * CosB0 - std::cos(l) * SinB0 * cosB);
  const double lBar = std::asin(std::sin(l) * cosB / std::cos(bBar));
  x = Radius * lBar + FalseEasting;
  y = Radius * SphereIsometric(bBar) + FalseNorthing;
  return errcode();
}

errcode ObliqueCylindrical::XYGeo(double x, double y, double& phi, double& lambda) const {
  const double lBar = (x - FalseEasting) / Radius;
  const double bBar = SphereLatitude((y - FalseNorthing) / Radius);
  const double cosBBar = std::cos(bBar);
  const double b = std::asin(std::sin(bBar) * CosB0 + std::cos(lBar) * SinB0 * cosBBar);
  const double l = std::asin(std::sin(lBar) * cosBBar / std::cos(b));
  const double S = (SphereIsometric(b) - KConst) / Alpha;

  double latitude = RefLatitude;
  double change = 0;
  int passes = 0;
  do {
    const double next = SphereLatitude(e() * std::atanh(e() * std::sin(latitude)) + S);
    change = std::fabs(latitude - next);
    latitude = next;
  } while (change > LatitudeTolerance && ++passes < MaxPasses);
  phi = latitude;
  lambda = l / Alpha + CentralMeridian;
  return errcode();
}

}  // namespace latigo
