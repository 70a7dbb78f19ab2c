#include "projection/oblique_cylindrical.h"

#include <algorithm>
#include <cmath>

namespace latigo {

namespace {

// The iteration ends when it changes the latitude by at most this, radians.
constexpr double LatitudeTolerance = 1e-7;

// Three to four iterations are usual; the limit is for ellipsoids on which the iteration would never end.
constexpr int MaxIterations = 1000;

}  // namespace

ObliqueCylindrical::ObliqueCylindrical(const GeodesyParams& params)
    : Projection(params),
      Sphere(*this, RefLatitude),
      Alpha(Sphere.exponent),
      KConst(Sphere.constant),
      Radius(Sphere.radius * ScaleFactor / Unit),
      Start(std::max(std::tan(HalfPi / 2 - RefLatitude / 2), CosOfRightAngle / 2)) {}

// Published       here          meaning
// S               Sphere.IsometricLatitude(phi)
// b, l (or I)     b, l          position on the sphere, as sine and cosine
// b-bar, l-bar    sinBBar, lBar position in the oblique system, whose equator is the great circle through the origin
// Published: tan l-bar = sin l / (sin b0 tan b + cos b0 cos l). Here sin l-bar = sin l cos b / cos b-bar, which is the
// same within a quarter turn of the origin.
errcode ObliqueCylindrical::GeoXY(double& x, double& y, double phi, double lambda) const {
  // Ellipsoid to sphere.
  const SinCos l = SinCosOf(Alpha * (lambda - CentralMeridian));
  const SinCos b = FromIsometric(Sphere.IsometricLatitude(phi));
  // Sphere to oblique system.
  const double sinBBar = b.sin * Sphere.cosChi0 - l.cos * Sphere.sinChi0 * b.cos;
  const double lBar = ArcSine(l.sin * b.cos / CosOfSine(sinBBar));
  // Oblique system to plane.
  x = Radius * lBar + FalseEasting;
  y = Radius / 2 * std::log((1 + sinBBar) / (1 - sinBBar)) + FalseNorthing;
  return errcode();
}

errcode ObliqueCylindrical::XYGeo(double x, double y, double& phi, double& lambda) const {
  // Plane to oblique system.
  const SinCos lBar = SinCosOf((x - FalseEasting) / Radius);
  const SinCos bBar = FromIsometric((y - FalseNorthing) / Radius);
  // Oblique system to sphere.
  const double sinB = std::clamp(bBar.sin * Sphere.cosChi0 + lBar.cos * Sphere.sinChi0 * bBar.cos, -1.0, 1.0);
  const double l = ArcSine(lBar.sin * bBar.cos / CosOfSine(sinB));

  // Sphere to ellipsoid: phi' = 2 atan(exp(S + e atanh(e sin phi))) - pi/2, which is Snyder's (7-9) with t = exp(-S).
  const double S = (std::log((1 + sinB) / (1 - sinB)) / 2 - KConst) / Alpha;
  phi = Converge(std::exp(-S), Start, LatitudeTolerance, MaxIterations).Latitude();
  lambda = l / Alpha + CentralMeridian;
  return errcode();
}

}  // namespace latigo
