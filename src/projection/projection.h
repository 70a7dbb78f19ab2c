// The base of the map projections: the ellipsoid, the parameters, the five operations, and the functions that several
// projections share. Angles are radians, north and east positive; x and y are grid units.
//
// A projection works out in its constructor whatever depends on the parameters only, and does not change afterwards.
// Formulas are in the symbols of Snyder, "Map Projections: A Working Manual" (USGS Professional Paper 1395, 1987),
// unless a class names another source.
#pragma once

#include <latigo/latigo.h>

#include <cmath>
#include <cstdint>

#include "datum/angles.h"
#include "datum/ellipsoid.h"
#include "frame/errcode.h"

namespace latigo {

class Projection : public Ellipsoid {
 public:
  virtual const char* Code() const = 0;  // static text of three letters
  virtual std::int32_t Kind() const = 0;
  virtual errcode XYGeo(double x, double y, double& phi, double& lambda) const = 0;
  virtual errcode GeoXY(double& x, double& y, double phi, double lambda) const = 0;
  // The point scale factor k at grid coordinates.
  virtual errcode Scale(double x, double y, double& k) const = 0;
  virtual ~Projection() = default;

  const double ScaleFactor;      // k0; 0 in the record counts as 1
  const double CentralMeridian;  // lambda0, radians
  const double RefLatitude;      // phi0, radians
  const double NorthParallel;    // a standard parallel, radians
  const double SouthParallel;    // the other standard parallel, radians
  const double SkewAzimuth;      // azimuth of the skew line, radians
  const double Unit;             // metres per grid unit; 0 in the record counts as 1
  const double FalseEasting;     // grid units, never scaled
  const double FalseNorthing;    // grid units, never scaled

 protected:
  explicit Projection(const GeodesyParams& params);

  // The Scale of projections that do not work one out: 1 everywhere.
  static errcode UnitScale(double x, double y, double& k);

  // Brings an angle into -pi to pi by whole turns; both ends stay as they are.
  static double NormalizeLongitude(double v) { return std::fabs(v) <= Pi ? v : WrapLongitude(v); }

  // Snyder's t (15-9): tan(pi/4 - chi/2) of the conformal latitude chi.
  double IsometricT(double phi) const;

  // The isometric latitude psi of the latitude with this sine, (7-7): t = exp(-psi).
  double IsometricLatitude(double sinPhi) const { return std::log((1 + sinPhi) / (1 - sinPhi)) / 2 - EccTerm(sinPhi); }

  // What the eccentricity takes from the isometric latitude: e/2 ln((1 + e s) / (1 - e s)).
  double EccTerm(double sinPhi) const {
    const double es = e() * sinPhi;
    return HalfE * std::log((1 + es) / (1 - es));
  }

  // One pass of the iteration from Snyder's t back to the latitude (7-9), phi' = pi/2 - 2 atan(t ((1 - e s) /
  // (1 + e s))^(e/2)), on u = tan(pi/4 - phi/2) instead of phi, so that s = (1 - u^2) / (1 + u^2).
  double LatitudePass(double t, double u) const {
    const double v = u * u;
    return t * std::exp(HalfE * std::log((OneMinusE + OnePlusE * v) / (OnePlusE + OneMinusE * v)));
  }

  // A latitude by u = tan(pi/4 - phi/2), and how many passes led to it. In the south u is that of -phi, for which the
  // passes are the same with 1/t, so that t stays at 1 or below.
  struct HalfComplement {
    double u;
    bool south;
    int passes;
    double Latitude() const { return south ? 2 * std::atan(u) - HalfPi : HalfPi - 2 * std::atan(u); }
  };

  // Passes from a start until one changes the latitude by no more than the tolerance, radians, but no more than so
  // many; if the last one did not meet the tolerance, one more is told. No number ends the passes at once.
  HalfComplement Converge(double t, double start, double tolerance, int maxPasses) const {
    const bool south = t > 1;
    t = south ? 1 / t : t;
    double u = south ? 1 / start : start;
    for (int pass = 1; pass <= maxPasses; ++pass) {
      const double last = u;
      u = LatitudePass(t, last);
      // phi' - phi = 2 atan((u - u') / (1 + u u')), and half a tolerance is its own tangent.
      if (!(std::fabs(u - last) > tolerance / 2 * (1 + u * last))) {
        return {u, south, pass};
      }
    }
    return {u, south, maxPasses + 1};
  }
  // From the conformal latitude.
  HalfComplement Converge(double t, double tolerance, int maxPasses) const {
    return Converge(t, t, tolerance, maxPasses);
  }

  // 1/m of Snyder's m (14-15) of the latitude with this u: the radius of the parallel for a semi-major axis of 1.
  double InvParallelRatio(double u) const {
    const double v = u * u;
    return std::sqrt((1 + v) * (1 + v) - e2() * (1 - v) * (1 - v)) / (2 * u);
  }

  // Snyder's m of a latitude.
  double ParallelRatio(double phi) const;

 private:
  static double WrapLongitude(double v);

  const double HalfE = e() / 2, OnePlusE = 1 + e(), OneMinusE = 1 - e();
};

}  // namespace latigo
