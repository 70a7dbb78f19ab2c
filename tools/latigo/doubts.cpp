#include "doubts.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace latigo::cli {

const std::array<const char*, Doubts> DoubtTexts = {
    "outside the datum grid or in rows that cannot be read, so converted without a shift",
    "too far from the projection's origin: the round-trip error exceeds one metre",
    "a whole number in the third field is read as a height; --no-height copies it (for ecef: --columns 1,2)",
    "near a pole or a limit of the projection: the error of the factors exceeds 1e-9",
    "too long for the mid-latitude formulas: the error of the distance can exceed 2 cm",
    "almost along a parallel: rounding errors of the distance can exceed 2 cm",
    "the datum grid does not change heights, so that above the ellipsoid of the section's datum is not known",
    "a height beyond 100 000, which may be another column",
};

namespace {

constexpr double TwoPi = 6.283185307179586;
constexpr double RadiansPerDegree = 0.017453292519943295;
constexpr double EarthRadius = 6371000;  // metres
constexpr double RoundTripLimit = 1;     // metres
constexpr double LargestError = 0.02;    // of a length that is not doubtful, metres

// The error of the mid-latitude formulas, measured beside geodesics on WGS 84 and rounded up: 16 mm for 100 km, growing
// with the third power of the length s; and near a pole the first term that the series leaves, s (s tan phi / R)^4 /
// 1920.
constexpr double ErrorAt100Km = 0.016;  // metres
constexpr double SeriesEnd = 1 / 1920.0;

// Rounding errors of the meridian arc between two parallels; and of the difference of their isometric latitudes, times
// the radius and the squared cosine of the latitude. Measured beside integrals on WGS 84 and rounded up, metres.
constexpr double RhumbNoise = 2.3e-9;

// Limits within which the round-trip error of a projection is not checked: longitude difference from the central
// meridian in degrees, and distances from the origin along the axes in metres. Farther north in the Mercator projection
// the latitude in double precision is too near the pole.
struct Reach {
  double degrees;
  double easting;
  double northing;
};

constexpr double Everywhere = 20.1e6;  // slightly more than half a meridian
constexpr double Seam = 1e-7;          // of the meridian opposite to the central one, radians
constexpr int Halvings = 6;            // of the limits
constexpr double PartOfWay = 0.9;      // to the pole, since the grid can be shorter than the ground

constexpr Reach ReachOf(std::int32_t kind) {
  switch (kind) {
    case LATIGO_KIND_TRANSVERSE_MERCATOR:
    case LATIGO_KIND_CASSINI:
      return {6, 700e3, 10.1e6};
    case LATIGO_KIND_MERCATOR:
    case LATIGO_KIND_MERCATOR_ON_SPHERE:
      return {181, Everywhere, 3 * Everywhere};
    case LATIGO_KIND_LAMBERT:
    case LATIGO_KIND_ALBERS:
      return {90, 3e6, 2e6};
    case LATIGO_KIND_AZIMUTHAL_EQUIDISTANT:
      return {10, 1.1e6, 1.1e6};
    case LATIGO_KIND_POLAR_STEREOGRAPHIC:
      return {181, Everywhere, Everywhere};
    default:
      return {20, 2.5e6, 2.5e6};
  }
}

// Whether the coordinates are metres and `Unit` is ignored.
constexpr bool IsMetric(std::int32_t kind) {
  return kind == LATIGO_KIND_OBLIQUE_STEREOGRAPHIC || kind == LATIGO_KIND_MERCATOR_ON_SPHERE ||
         kind == LATIGO_KIND_POLAR_STEREOGRAPHIC;
}

}  // namespace

RoundTrip::RoundTrip(GeodesyHandle object) : object_(object) {
  GeodesyParams params;
  Adjustment adjustment;
  GetGeodesyParams(object, &params, nullptr, nullptr);
  GetAdjustment(object, &adjustment);
  // Mercator on a sphere reads no parameter.
  centralMeridian_ = params.Kind == LATIGO_KIND_MERCATOR_ON_SPHERE ? 0 : params.CentralMeridian;
  metresPerUnit_ = IsMetric(params.Kind) ? 1 : params.Unit;
  const Reach reach = ReachOf(params.Kind);
  nearLongitude_ = reach.degrees * RadiansPerDegree;
  nearX_ = reach.easting / metresPerUnit_;
  nearY_ = reach.northing / metresPerUnit_;
  if (reach.northing < Everywhere) {  // beyond the pole the inverse can return the position on this side of it
    const double toPole = EarthRadius * (TwoPi / 4 - std::fabs(params.RefLatitude)) / metresPerUnit_;
    nearY_ = std::min(nearY_, PartOfWay * toPole);
  }
  const auto localGrid = adjustment.AdjustType & LATIGO_ADJUST_TYPE;
  if (localGrid == LATIGO_ADJUST_SIMILARITY) {  // which may rotate the axes
    nearX_ = nearY_ = std::min(nearX_, nearY_);
  }
  if (GeoXY(object, &originX_, &originY_, params.RefLatitude, params.CentralMeridian) == 0) {
    originX_ = originY_ = NAN;  // so that every point is checked
  }
  if (params.Kind == LATIGO_KIND_HOTINE || params.Kind == LATIGO_KIND_RSO) {
    KeepToNaturalOrigin();
  }
  if (localGrid >= LATIGO_ADJUST_POLYNOMIAL_5 && localGrid <= LATIGO_ADJUST_CHAINS_16) {
    nearX_ = nearY_ = -1;  // a polynomial, whose area is not known: every point is checked
  }
}

// The inverse of the oblique Mercator is lost beyond 90 degrees from the natural origin along the central line, which
// can be near the centre. That is beyond a straight line of the grid, so not within the limits if their corners return.
void RoundTrip::KeepToNaturalOrigin() {
  const auto returns = [this](double x, double y) {
    double latitude = 0;
    double longitude = 0;
    return XYGeo(object_, x, y, &latitude, &longitude) != 0 && ReturnsToGrid(x, y, latitude, longitude);
  };
  for (int i = 0; i < Halvings; ++i) {
    if (returns(originX_ - nearX_, originY_ - nearY_) && returns(originX_ - nearX_, originY_ + nearY_) &&
        returns(originX_ + nearX_, originY_ - nearY_) && returns(originX_ + nearX_, originY_ + nearY_)) {
      return;
    }
    nearX_ /= 2;
    nearY_ /= 2;
  }
  nearX_ = nearY_ = -1;  // so that every point is checked
}

bool RoundTrip::ReturnsToPosition(double latitude, double longitude, double x, double y) const {
  double backLatitude = 0;
  double backLongitude = 0;
  const bool there = XYGeo(object_, x, y, &backLatitude, &backLongitude) != 0;
  const double north = EarthRadius * (backLatitude - latitude);
  const double east = EarthRadius * std::cos(latitude) * std::remainder(backLongitude - longitude, TwoPi);
  return there && std::hypot(north, east) <= RoundTripLimit;
}

bool RoundTrip::ReturnsToGrid(double x, double y, double latitude, double longitude) const {
  double backX = 0;
  double backY = 0;
  // Beyond half a turn, in the gap between the edges of a cone, the meridian is that of another place.
  if (std::fabs(longitude - centralMeridian_) > TwoPi / 2 + Seam) {
    longitude = centralMeridian_ + std::remainder(longitude - centralMeridian_, TwoPi);
  }
  const bool there = GeoXY(object_, &backX, &backY, latitude, longitude) != 0;
  return there && std::hypot(backX - x, backY - y) * metresPerUnit_ <= RoundTripLimit;
}

bool IsLongLine(double phi, double s) {
  const double relative = s * std::tan(phi) / EarthRadius;
  return !(ErrorAt100Km * std::pow(s / 1e5, 3) + s * std::pow(relative, 4) * SeriesEnd <= LargestError);
}

// The length is a meridian arc divided by the cosine of the azimuth, except between equal latitudes; near a pole the
// azimuth has larger errors than the arc.
bool IsFlatRhumbLine(double latitude1, double latitude2, double azimuth) {
  const double nearer = std::cos(std::max(std::fabs(latitude1), std::fabs(latitude2)));
  const double noise = RhumbNoise * std::max(1.0, std::pow(std::sin(azimuth), 2) / nearer);
  return latitude1 != latitude2 && !(noise <= LargestError * std::fabs(std::cos(azimuth)));
}

}  // namespace latigo::cli
