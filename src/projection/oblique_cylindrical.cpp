#include "projection/oblique_cylindrical.h"

#include <algorithm>
#include <cmath>

namespace latigo {

namespace {

// The latitude is good when a pass changes it by no more than this, radians.
constexpr double LatitudeTolerance = 1e-7;

// Three to four passes are the rule; the bound only ends what would never end on an ellipsoid far from the earth's.
constexpr int MaxPasses = 1000;

}  // namespace

ObliqueCylindrical::ObliqueCylindrical(const GeodesyParams& params)
    : Projection(params),
      Sphere(*this, RefLatitude),
      Alpha(Sphere.exponent),
      KConst(Sphere.constant),
      Radius(Sphere.radius * ScaleFactor / Unit),
      Start(std::max(std::tan(HalfPi / 2 - RefLatitude / 2), CosOfRightAngle / 2)) {}

errcode ObliqueCylindrical::GeoXY(double& x, double& y, double phi, double lambda) const {
  const SinCos l = SinCosOf(Alpha * (lambda - CentralMeridian));
  const SinCos b = FromIsometric(Sphere.IsometricLatitude(phi));
  // Latitude and longitude in the oblique system.
  const double sinBBar = b.sin * Sphere.cosChi0 - l.cos * Sphere.sinChi0 * b.cos;
  const double lBar = ArcSine(l.sin * b.cos / CosOfSine(sinBBar));
  x = Radius * lBar + FalseEasting;
  y = Radius / 2 * std::log((1 + sinBBar) / (1 - sinBBar)) + FalseNorthing;
  return errcode();
}

errcode ObliqueCylindrical::XYGeo(double x, double y, double& phi, double& lambda) const {
  const SinCos lBar = SinCosOf((x - FalseEasting) / Radius);
  const SinCos bBar = FromIsometric((y - FalseNorthing) / Radius);
  const double sinB = std::clamp(bBar.sin * Sphere.cosChi0 + lBar.cos * Sphere.sinChi0 * bBar.cos, -1.0, 1.0);
  const double l = ArcSine(lBar.sin * bBar.cos / CosOfSine(sinB));
  lambda = l / Alpha + CentralMeridian;

  // phi' = 2 atan(exp(S + e atanh(e sin phi))) - pi/2, which is the iteration from Snyder's t = exp(-S).
  const double S = (std::log((1 + sinB) / (1 - sinB)) / 2 - KConst) / Alpha;
  phi = Converge(std::exp(-S), Start, LatitudeTolerance, MaxPasses).Latitude();
  return errcode();
}

}  // namespace latigo
