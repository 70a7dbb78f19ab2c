#include "measures.h"

#include <cmath>
#include <numbers>

namespace latigo::picture {

namespace {

constexpr double Degree = std::numbers::pi / 180;

constexpr double LargestError = 1e-6;  // of factors that a picture shows

GeodesyParams ParamsOf(GeodesyHandle handle) {
  GeodesyParams params{};
  GetGeodesyParams(handle, &params, nullptr, nullptr);
  return params;
}

// Mercator on a sphere takes latitudes on the ellipsoid for those on the sphere, which keeps no angles.
bool KeepsAngles(std::int32_t kind) {
  return kind != LATIGO_KIND_AZIMUTHAL_EQUIDISTANT && kind != LATIGO_KIND_ALBERS && kind != LATIGO_KIND_CASSINI &&
         kind != LATIGO_KIND_MERCATOR_ON_SPHERE;
}

Outcome Finite(double value) {
  return std::isfinite(value) ? Outcome{value, 0} : Outcome{0, NotANumber};
}

}  // namespace

Measures::Measures(GeodesyHandle handle)
    : handle_(handle),
      a_(ParamsOf(handle).SemiMajorAxis),
      e2_((2 - 1 / ParamsOf(handle).InvFlattening) / ParamsOf(handle).InvFlattening),
      conformal_(KeepsAngles(ParamsOf(handle).Kind)),
      differences_(handle) {}

double Measures::Distance(Position from, Position to) const {
  // M and N, the principal radii of curvature.
  const double s = std::sin(from.latitude * Degree);
  const double W = 1 - e2_ * s * s;
  const double N = a_ / std::sqrt(W);
  const double M = N * (1 - e2_) / W;
  const double north = M * Degree * (to.latitude - from.latitude);
  const double east =
      N * std::cos(from.latitude * Degree) * Degree * std::remainder(to.longitude - from.longitude, 360);
  return std::hypot(north, east);
}

Outcome Measures::Closure(Position position) const {
  double x = 0;
  double y = 0;
  double phi = 0;
  double lambda = 0;
  if (GeoXY(handle_, &x, &y, position.latitude * Degree, position.longitude * Degree) == 0 ||
      XYGeo(handle_, x, y, &phi, &lambda) == 0) {
    return {0, GetGeodesyError()};
  }
  return Finite(Distance(position, {phi / Degree, lambda / Degree}) * 1000);
}

Outcome Measures::ScaleExcess(Position position) const {
  double x = 0;
  double y = 0;
  if (GeoXY(handle_, &x, &y, position.latitude * Degree, position.longitude * Degree) == 0) {
    return {0, GetGeodesyError()};
  }
  const double k = ::Scale(handle_, x, y);
  return GetGeodesyError() != 0 ? Outcome{0, GetGeodesyError()} : Finite((k - 1) * 1e6);
}

Outcome Measures::FactorsAt(Position position, Factors& factors) const {
  double x = 0;
  double y = 0;
  if (GeoXY(handle_, &x, &y, position.latitude * Degree, position.longitude * Degree) == 0) {
    return {0, GetGeodesyError()};
  }
  const bool known = std::isfinite(x) && std::isfinite(y) &&
                     differences_.At(position.latitude * Degree, position.longitude * Degree, factors);
  // Without digits there are no factors: at an edge of the projection's plane, for instance.
  return {0, known && factors.error < LargestError ? 0 : NotANumber};
}

Outcome Measures::FactorExcess(Position position) const {
  Factors factors;
  const Outcome outcome = FactorsAt(position, factors);
  const auto [a, b] = factors.SemiAxes();
  const double farther = std::fabs(a - 1) > std::fabs(b - 1) ? a : b;
  return outcome.code != 0 ? outcome : Finite(((conformal_ ? factors.Mean() : farther) - 1) * 1e6);
}

Outcome Measures::Convergence(Position position) const {
  Factors factors;
  const Outcome outcome = FactorsAt(position, factors);
  return outcome.code != 0 ? outcome : Finite(factors.convergence / Degree);
}

}  // namespace latigo::picture
