// The base of the map projections: the ellipsoid, the parameters, the five operations, and the functions that several
// projections share. Angles are radians, north and east positive; x and y are grid units.
//
// A projection works out in its constructor whatever depends on the parameters only, and does not change afterwards.
// Formulas are in the symbols of Snyder, "Map Projections: A Working Manual" (USGS Professional Paper 1395, 1987),
// unless a class names another source.
#pragma once

#include <latigo/latigo.h>

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
  static double NormalizeLongitude(double v);

  // Snyder's t (15-9): tan(pi/4 - chi/2) of the conformal latitude chi.
  double IsometricT(double phi) const;

  // One pass of the iteration from t back to the latitude (7-9), with the sine of the latitude of the pass before.
  double LatitudePass(double t, double sinPhi) const;

  // Snyder's m (14-15): the radius of the parallel for a semi-major axis of 1.
  double ParallelRatio(double phi) const;
};

}  // namespace latigo
