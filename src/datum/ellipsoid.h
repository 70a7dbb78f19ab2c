// The reference ellipsoid and the operations that depend on it alone. Angles are radians, north and east positive;
// lengths are metres.
#pragma once

#include <cmath>

#include "math/angles.h"

namespace latigo {

struct Geographic {
  double phi;     // latitude, radians
  double lambda;  // longitude, radians
  double h;       // height above the ellipsoid, metres
};

// Earth-centred, earth-fixed: X towards latitude 0 longitude 0, Z towards the north pole; metres.
struct Cartesian {
  double X, Y, Z;
};

class Ellipsoid {
 public:
  // From the semi-major axis in metres and the flattening itself; 0 gives a sphere.
  Ellipsoid(double semiMajorAxis, double flattening);

  // From the semi-major axis in metres and the reciprocal flattening; exactly 0 gives a sphere.
  static Ellipsoid FromInvFlattening(double semiMajorAxis, double invFlattening);

  double a() const { return a_; }
  double f() const { return f_; }
  double e2() const { return e2_; }
  double e() const { return e_; }

  double PrimeVerticalRadius(double phi) const;  // N(phi), metres
  double MeridianRadius(double phi) const;       // M(phi), metres

  // N from the sine of the latitude.
  double NOfSine(double sinPhi) const { return a_ / std::sqrt(1 - e2_ * sinPhi * sinPhi); }

  // Length of the meridian from the equator to phi, metres, signed as phi: the series in e2 up to e^6.
  double MeridianArc(double phi) const;

  // The same with the coefficients computed beforehand, and the sines from sine and cosine of phi.
  struct ArcTerms {
    double A0;
    FourTerms sines;  // of 2 phi, 4 phi, 6 phi; the last is 0
  };
  ArcTerms MeridianArcTerms() const;
  double MeridianArc(const ArcTerms& terms, double phi, const SinCos& of) const {
    return a_ * (terms.A0 * phi + SineSeries(terms.sines, Doubled(of)));
  }

  Cartesian GeoECEF(const Geographic& position) const {
    return GeoECEF(SinCosOf(position.phi), SinCosOf(position.lambda), position.h);
  }
  Cartesian GeoECEF(const SinCos& phi, const SinCos& lambda, double h) const {
    const double N = NOfSine(phi.sin);
    const double p = (N + h) * phi.cos;
    return {p * lambda.cos, p * lambda.sin, ((1 - e2_) * N + h) * phi.sin};
  }

  // The inverse, by iteration on the latitude. On the polar axis the longitude is 0; the centre of the earth has
  // latitude -pi/2. Longitudes are from -pi to pi.
  Geographic ECEFGeo(const Cartesian& position) const;

  // Distance between two positions, metres, along the shortest line or along the line of constant bearing (lines.cpp).
  // `az` (may be null) receives the azimuth at the first position, radians clockwise from north, not normalised.
  double GCircLL(double phi1, double lambda1, double phi2, double lambda2, double* az) const;
  double RLineLL(double phi1, double lambda1, double phi2, double lambda2, double* az) const;

  // Exact comparison of a and f.
  bool operator!=(const Ellipsoid& other) const { return a_ != other.a_ || f_ != other.f_; }

 private:
  double a_;   // semi-major axis, metres
  double f_;   // flattening
  double e2_;  // first eccentricity squared
  double e_;   // first eccentricity
};

extern const Ellipsoid WGS84Ellipsoid;

}  // namespace latigo
