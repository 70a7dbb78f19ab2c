#include "projection/stereographic.h"

#include <algorithm>
#include <cmath>

namespace latigo {

namespace {

// The iteration ends when a step is at most this, radians.
constexpr double LatitudeTolerance = 1e-12;

// Four to six iterations are usual; the limit is for ellipsoids on which the iteration would never end.
constexpr int MaxIterations = 1000;

}  // namespace

Stereographic::Stereographic(const GeodesyParams& params)
    : Projection(params),
      Sphere(*this, RefLatitude),
      N(Sphere.exponent),
      C(std::exp(Sphere.constant)),
      LonN(CentralMeridian * N),
      InvN(1 / N),
      TwoRK(Sphere.radius * (ScaleFactor + ScaleFactor)),
      InvTwoRK(1 / TwoRK),
      TwoR(2 * Sphere.radius) {}

// Guidance Note       here
// chi                 chi      conformal latitude, as sine and cosine, by ConformalSphere
// Lambda - Lambda0    Lambda   longitude on the sphere from the origin, n (lambda - lambda0)
// B                   D        1 + sin chi sin chi0 + cos chi cos chi0 cos(Lambda - Lambda0)
//     E = FE + 2 R k0 cos chi sin(Lambda - Lambda0) / B
//     N = FN + 2 R k0 (sin chi cos chi0 - cos chi sin chi0 cos(Lambda - Lambda0)) / B
errcode Stereographic::GeoXY(double& x, double& y, double phi, double lambda) const {
  const SinCos chi = FromIsometric(Sphere.IsometricLatitude(phi));
  const SinCos Lambda = SinCosOf(N * lambda - LonN);
  const double D = 1 + Sphere.sinChi0 * chi.sin + Sphere.cosChi0 * chi.cos * Lambda.cos;
  const double factor = TwoRK / D;
  x = factor * chi.cos * Lambda.sin + FalseEasting;
  y = factor * (Sphere.cosChi0 * chi.sin - Sphere.sinChi0 * chi.cos * Lambda.cos) + FalseNorthing;
  return errcode();
}

// Plane to conformal sphere; the Guidance Note's g, h, i and j lead to the same point. With r and the azimuth Az of a
// grid point about the origin: c' = 2 atan(r / (2 R k0)),
//     sin chi = cos c' sin chi0 + sin c' cos chi0 cos Az, sin(Lambda - Lambda0) = sin c' sin Az / cos chi.
// With X, Y in units of 2 R k0: d = 1 + cos c' = 2 / (1 + X^2 + Y^2), and sin c' (sin Az, cos Az) = d (X, Y), so no
// angle is formed.
Stereographic::OnSphere Stereographic::PlaneToSphere(double x, double y) const {
  const double X = (x - FalseEasting) * InvTwoRK;
  const double Y = (y - FalseNorthing) * InvTwoRK;
  const double d = 2 / (1 + (X * X + Y * Y));
  const double sinChi = std::clamp((d - 1) * Sphere.sinChi0 + Sphere.cosChi0 * (d * Y), -1.0, 1.0);
  // No double equals pi/2, so no cosine is 0: of h at the near pole, of chi at the far one.
  const SinCos h = {std::sqrt((1 + sinChi) / 2), std::max(std::sqrt((1 - sinChi) / 2), CosOfRightAngle)};
  const double cosChi = std::max(2 * h.sin * h.cos, CosOfRightAngle);
  return {std::asin(sinChi), h, ArcSine(d * X / cosChi)};
}

// Conformal sphere to ellipsoid; the Guidance Note iterates on psi, this on z. The latitude solves
//     c z^n = w0 = tan(pi/4 + chi/2), z = T P, T = tan h, h = pi/4 + phi/2,
//     P = ((1 - e s) / (1 + e s))^(e/2), s = sin phi,
// from phi = chi by the steps g / (c n z^(n-1) Q), g = c z^n - w0.
//
// The derivative of z is P / (2 cos^2 h) - T P cos phi e2 / (1 - e2 s^2). The prescribed slope Q departs from it in the
// second term, which has no factor P, one factor s more, and e2 s for e2 s^2; in the south it has the other sign. The
// resulting latitude is the same, since g is; a few more iterations are needed, as the steps have errors of order e2.
double Stereographic::SphereToEllipsoid(double chi, SinCos h) const {
  const double w0 = h.sin / h.cos;
  double phi = chi;
  for (int iterations = 1;; ++iterations) {
    const double s = (h.sin - h.cos) * (h.sin + h.cos);
    const double invCosH = 1 / h.cos;
    const double T = h.sin * invCosH;
    const double eccTerm = EccTerm(s);
    const double P = std::exp(-eccTerm);
    const double zN1 = std::exp((N - 1) * (std::log(T) - eccTerm));  // z^(n - 1)
    const double g = C * (zN1 * (T * P)) - w0;
    const double Q =
        0.5 * P * invCosH * invCosH - 2 * h.sin * h.sin * e2() * s / (1 - e2() * s);  // T cos phi = 2 sin^2 h
    const double step = g / (C * N * zN1 * Q);
    phi -= step;
    if (!(std::fabs(step) > LatitudeTolerance) || iterations == MaxIterations) {
      return phi;
    }
    h = SinCosOf(phi / 2 + HalfPi / 2);
  }
}

errcode Stereographic::XYGeo(double x, double y, double& phi, double& lambda) const {
  const auto [chi, h, Lambda] = PlaneToSphere(x, y);
  phi = SphereToEllipsoid(chi, h);
  lambda = (Lambda + LonN) * InvN;
  return errcode();
}

// The scale factor from the sphere to the plane: k0 (1 + (r / (2 R k0))^2).
errcode Stereographic::Scale(double x, double y, double& k) const {
  const double ratio = Hypotenuse(x - FalseEasting, y - FalseNorthing) / TwoR;
  k = ratio * ratio / ScaleFactor + ScaleFactor;
  return errcode();
}

}  // namespace latigo
