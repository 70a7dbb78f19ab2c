// Oblique Mercator on the ellipsoid: Hotine's rectified skew orthomorphic projection through the aposphere. Hotine,
// "The orthomorphic projection of the spheroid", Empire Survey Review (1946/47); Snyder, USGS PP 1395, chapter 9,
// alternate B, (9-11) to (9-48). Shared by Hotine and RSO, which rotate the skew frame into the grid by different
// angles.
//
// Reads RefLatitude and CentralMeridian (the centre), SkewAzimuth (azimuth of the central line at the centre),
// ScaleFactor, Unit and the false origin. The false origin belongs to the natural origin, where the central line
// crosses the equator of the aposphere; the centre does not map to it.
// Domain: GeoXY accepts any position except the poles, where coordinates are NaN with code 0; XYGeo returns true
// longitudes where B u / A is within 90 degrees of 0.
// Accuracy: forward exact to rounding; the inverse stops when an iteration changes the latitude by at most 1e-9 radians
// (6 mm), and the remaining error is smaller by the factor e^2: 0.043 mm.
// Failures: 11 from XYGeo and Scale.
//
// The skew frame: u along the central line, v across it, metres from the natural origin.
#pragma once

#include "projection/projection.h"

namespace latigo {

class ObliqueMercator : public Projection {
 public:
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override;

  // Skew frame to grid, and grid to skew frame.
  virtual void UVXY(double u, double v, double& x, double& y) const = 0;
  virtual void XYUV(double x, double y, double& u, double& v) const = 0;

 protected:
  explicit ObliqueMercator(const GeodesyParams& params);

  // Rotation by omega: (9-33) and (9-34), (9-40) and (9-41), whose alpha_c it is.
  void RotateToGrid(const SinCos& omega, double u, double v, double& x, double& y) const;
  void RotateToSkew(const SinCos& omega, double x, double y, double& u, double& v) const;

 private:
  // A point of the skew frame on the aposphere: tan(B (lambda0 - lambda)) = across / along, (9-48).
  struct Aposphere {
    HalfComplement latitude;
    double across;  // S' cos gamma0 - V' sin gamma0
    double along;   // cos(B u / A)
  };
  Aposphere OnAposphere(double u, double v) const;

  // Skew frame to geographic.
  errcode UVGeo(double u, double v, double& phi, double& lambda) const;

  double MakeB() const;
  double MakeA() const;
  double MakeD() const;
  double MakeF() const;

  const double B;     // aposphere exponent (9-11)
  const double A;     // radius of the aposphere (9-12), k0 included, metres
  const double D;     // (9-14), at least 1
  const double F;     // (9-35)
  const double H;     // F t(phi0)^B: the E of (9-36)
  const double LogH;  // ln H

 protected:
  const double Gamma0;  // azimuth of the central line at the aposphere's equator (9-38), radians

 private:
  const SinCos Skew;     // of Gamma0
  const double Lambda0;  // longitude of the natural origin (9-39), radians
};

}  // namespace latigo
