#include "arc_to_chord.h"

#include <cmath>

#include "../picture/factors.h"
#include "distances.h"
#include "factors.h"

namespace latigo::cli {

namespace {

constexpr double ArcSecond = RadiansPerDegree / 3600;

// The azimuth at a position of the geodesic to another, clockwise from north: that of the normal section, from
// earth-centred coordinates, less the angle between both (Rapp, Geometric Geodesy, Part I). With the azimuth A of the
// section, the length s of the chord and eta2 = e'^2 cos^2 phi, the angle is
//     eta2 (s / N)^2 sin 2A / 12 - e'^2 sin phi cos phi (s / N)^3 sin A / 24
// to 0.0002 arc seconds at 100 km.
double GeodesicAzimuth(GeodesyHandle handle, const Position& from, const Position& to) {
  GeodesyParams params{};
  GetGeodesyParams(handle, &params, nullptr, nullptr);
  const double f = 1 / params.InvFlattening;
  const double e2 = f * (2 - f);
  double p[3];
  double q[3];
  GeoECEF(handle, &p[0], &p[1], &p[2], from.latitude, from.longitude, 0);
  GeoECEF(handle, &q[0], &q[1], &q[2], to.latitude, to.longitude, 0);
  const double X = q[0] - p[0];
  const double Y = q[1] - p[1];
  const double Z = q[2] - p[2];
  const double s = std::sin(from.latitude);
  const double c = std::cos(from.latitude);
  const double east = Y * std::cos(from.longitude) - X * std::sin(from.longitude);
  const double north = Z * c - s * (X * std::cos(from.longitude) + Y * std::sin(from.longitude));
  const double A = std::atan2(east, north);
  const double N = params.SemiMajorAxis / std::sqrt(1 - e2 * s * s);
  const double sigma = std::hypot(X, Y, Z) / N;
  const double second = e2 / (1 - e2) * sigma * sigma;
  return A - second * c * (c * std::sin(2 * A) / 12 - s * sigma * std::sin(A) / 24);
}

}  // namespace

void DistanceAndArcToChord(const Converter& converter, const PointLine& line, Result& result) {
  Ends ends;
  DistanceOfGreatCircle(converter, line, result);
  if (!ReadEnds(converter, line, ends, result)) {
    return;
  }
  const auto& [from, to] = ends;
  double fromX = 0;
  double fromY = 0;
  double toX = 0;
  double toY = 0;
  if (!result.Call(GeoXY(converter.Handle(), &fromX, &fromY, from.latitude, from.longitude), "GeoXY") ||
      !result.Call(GeoXY(converter.Handle(), &toX, &toY, to.latitude, to.longitude), "GeoXY")) {
    return;
  }
  converter.CheckForward(from, fromX, fromY, result);
  converter.CheckForward(to, toX, toY, result);
  if (result.values[0].value == 0) {  // a line without a direction
    result.Add(0, Quantity::ArcSeconds);
    result.Add(0, Quantity::ArcSeconds);
    return;
  }
  const picture::Differences differences(converter.Handle());
  const auto add = [&](const Position& at, const Position& other, double x, double y) {
    double angle = 0;
    if (differences.ArcToChord(at.latitude, at.longitude, GeodesicAzimuth(converter.Handle(), at, other), x, y,
                               angle)) {
      result.Add(angle / ArcSecond, Quantity::ArcSeconds);
    } else {
      result.fault = NoFactors;
    }
  };
  add(from, to, toX - fromX, toY - fromY);
  add(to, from, fromX - toX, fromY - toY);
}

}  // namespace latigo::cli
