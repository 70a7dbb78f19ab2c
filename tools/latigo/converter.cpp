#include "converter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/ascii.h"

namespace latigo::cli {

const std::array<const char*, Doubts> DoubtTexts = {
    "outside the datum grid or in rows that cannot be read, so converted without a shift",
    "too far from the projection's origin: the round-trip error exceeds one metre",
    "a whole number in the third field is read as a height; --no-height copies it",
    "near a pole or a limit of the projection: the error of the factors exceeds 1e-9",
    "too long for the mid-latitude formulas: the error of the distance can exceed 2 cm",
    "almost along a parallel: rounding errors of the distance can exceed 2 cm",
};

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double TwoPi = 6.283185307179586;

constexpr std::size_t PathSize = 512;
constexpr double EarthRadius = 6371000;   // metres
constexpr double RoundTripLimit = 1;      // metres
constexpr double HeightTolerance = 1e-6;  // metres
constexpr int HeightIterations = 10;

// Limits within which the round-trip error of a projection is not checked: longitude difference from the central
// meridian in degrees, and distances from the origin along the axes in metres.
struct Reach {
  double degrees;
  double easting;
  double northing;
};

constexpr double Everywhere = 20.1e6;  // slightly more than half a meridian

constexpr Reach ReachOf(std::int32_t kind) {
  switch (kind) {
    case LATIGO_KIND_TRANSVERSE_MERCATOR:
    case LATIGO_KIND_CASSINI:
      return {6, 700e3, 10.1e6};
    case LATIGO_KIND_MERCATOR:
    case LATIGO_KIND_MERCATOR_ON_SPHERE:
      return {181, Everywhere, 5 * Everywhere};
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

double Wrapped(double longitude) {
  return std::fabs(longitude) <= Pi ? longitude : std::remainder(longitude, TwoPi);
}

api::Geodesy OpenOrThrow(const Options& options) {
  Opened opened = OpenSection(options.file, options.section);
  if (opened.code != 0) {
    throw UsageError(options.file + " [" + options.section + "]: " + opened.explanation);
  }
  return std::move(opened.object);
}

}  // namespace

Converter::Converter(const PointOptions& options, const Between& between)
    : between_(between),
      lonlat_(options.lonlat),
      name_(options.file + " [" + options.section + "]"),
      object_(OpenOrThrow(options)) {
  GeodesyParams params;
  GetGeodesyParams(Handle(), &params, nullptr, nullptr);
  // Mercator on a sphere reads no parameter.
  centralMeridian_ = params.Kind == LATIGO_KIND_MERCATOR_ON_SPHERE ? 0 : params.CentralMeridian;
  metresPerUnit_ = IsMetric(params.Kind) ? 1 : params.Unit;
  char path[PathSize] = "";
  double constant = 0;
  GetGeoid(Handle(), path, sizeof path, &constant);
  hasGeoid_ = !between.noGeoid && (path[0] != '\0' || constant != 0);
  hasVerticalUnit_ = ConfigFile(options.file).HasValue(options.section, "VertUnit");
  if (!between.localGrid) {
    const Adjustment none = {0, 0, 0, 0, 1, 0, 0};
    SetAdjustment(Handle(), &none);
  }
  if (char grid[PathSize] = ""; between.shift && GetEllModel(Handle(), grid, sizeof grid) != 0 && grid[0] != '\0') {
    datumGrid_ = std::make_unique<InterpFile>(grid, false);
  }
  Adjustment adjustment;
  GetAdjustment(Handle(), &adjustment);
  const Reach reach = ReachOf(params.Kind);
  nearLongitude_ = reach.degrees * RadiansPerDegree;
  nearX_ = reach.easting / metresPerUnit_;
  nearY_ = reach.northing / metresPerUnit_;
  if ((adjustment.AdjustType & LATIGO_ADJUST_TYPE) != 0) {  // which may rotate the axes
    nearX_ = nearY_ = std::min(nearX_, nearY_);
  }
  if (GeoXY(Handle(), &originX_, &originY_, params.RefLatitude, params.CentralMeridian) == 0) {
    originX_ = originY_ = NAN;  // so that every point is checked
  }
}

bool Converter::ReadGeographic(const PointLine& point, Position& position, Result& result) const {
  auto& [latitude, longitude, h] = position;
  latitude = point.first * RadiansPerDegree;
  longitude = point.second * RadiansPerDegree;
  h = point.third.value_or(0);
  if (between_.shift && (!InDatumGrid(latitude, longitude, result) ||
                         !result.Call(WGS84Conv(Handle(), &latitude, &longitude, &h), "WGS84Conv"))) {
    return false;
  }
  // Wrapped to the central meridian, since not every projection wraps longitudes.
  if (std::fabs(longitude - centralMeridian_) > Pi) {
    longitude -= std::copysign(TwoPi, longitude - centralMeridian_);
  }
  return true;
}

bool Converter::ToOutputDatum(Position& position, Result& result) const {
  return !between_.shift ||
         (InDatumGrid(position.latitude, position.longitude, result) &&
          result.Call(InvWGS84Conv(Handle(), &position.latitude, &position.longitude, &position.h), "InvWGS84Conv"));
}

void Converter::WriteGeographic(const Position& position, Result& result) const {
  const double longitude = position.longitude / RadiansPerDegree;
  result.Add(position.latitude / RadiansPerDegree, Quantity::Latitude);
  result.Add(std::fabs(longitude) <= 180 ? longitude : std::remainder(longitude, 360), Quantity::Longitude);
  if (lonlat_) {
    std::swap(result.values[0], result.values[1]);
  }
}

bool Converter::ToWgs84(Position& position, Result& result) const {
  return !between_.shift ||
         (InDatumGrid(position.latitude, position.longitude, result) &&
          result.Call(InvWGS84Conv(Handle(), &position.latitude, &position.longitude, &position.h), "InvWGS84Conv"));
}

bool Converter::UndulationAt(double latitude, double longitude, double& undulation, Result& result) const {
  return result.Call(Undulation(Handle(), latitude, longitude, &undulation), "Undulation");
}

bool Converter::ReadUndulation(const PointLine& point, const Position& position, double& undulation,
                               Result& result) const {
  return GeoidOnWgs84() ? UndulationAt(point.first * RadiansPerDegree, Wrapped(point.second * RadiansPerDegree),
                                       undulation, result)
                        : UndulationAt(position.latitude, position.longitude, undulation, result);
}

bool Converter::ToGridHeight(const PointLine& point, const Position& position, double& height, Result& result) const {
  double undulation = 0;
  if (hasGeoid_ && !ReadUndulation(point, position, undulation, result)) {
    return false;
  }
  // The undulation above WGS-84 is subtracted from the height above WGS-84, before the shift.
  height = (hasGeoid_ && GeoidOnWgs84() ? *point.third : position.h) - undulation;
  return !hasVerticalUnit_ || result.Call(VConvert(Handle(), &height, LATIGO_FROM_METRES), "VConvert");
}

bool Converter::FromGridHeight(const PointLine& point, Position& position, Result& result) const {
  double height = point.third.value_or(0);
  if (hasVerticalUnit_ && !result.Call(VConvert(Handle(), &height, LATIGO_TO_METRES), "VConvert")) {
    return false;
  }
  const bool withGeoid = hasGeoid_ && point.third;
  if (!between_.shift) {
    double undulation = 0;
    if (withGeoid && !UndulationAt(position.latitude, position.longitude, undulation, result)) {
      return false;
    }
    position.h = height + undulation;
    return true;
  }
  if (!InDatumGrid(position.latitude, position.longitude, result)) {
    return false;
  }
  Position own = position;
  own.h = height;
  if (withGeoid && !GeoidOnWgs84()) {
    double undulation = 0;
    if (!UndulationAt(position.latitude, position.longitude, undulation, result)) {
      return false;
    }
    own.h += undulation;
  }
  // Given is the height above WGS-84, but the shift needs the height above the object's ellipsoid. It is found by
  // correcting the difference, which the shift changes by about 1e-5 of itself.
  for (int i = 0; i < HeightIterations; ++i) {
    position = own;
    if (!result.Call(InvWGS84Conv(Handle(), &position.latitude, &position.longitude, &position.h), "InvWGS84Conv")) {
      return false;
    }
    if (!withGeoid || !GeoidOnWgs84()) {
      return true;
    }
    double undulation = 0;
    if (!UndulationAt(position.latitude, Wrapped(position.longitude), undulation, result)) {
      return false;
    }
    const double miss = height + undulation - position.h;
    position.h = height + undulation;
    if (!(std::fabs(miss) > HeightTolerance)) {
      return true;
    }
    own.h += miss;
  }
  return true;
}

bool Converter::InDatumGrid(double latitude, double longitude, Result& result) const {
  if (!datumGrid_) {
    return true;
  }
  switch (datumGrid_->Lookup(latitude, longitude, nullptr, {}).code()) {
    case 0:
      return true;
    case OutsideGrid:
      result.fault = between_.unshifted ? nullptr : "the point is outside the datum grid";
      break;
    default:
      result.fault = between_.unshifted ? nullptr : "the datum grid's rows at the point cannot be read";
  }
  result.Add(Doubt::Unshifted);
  return between_.unshifted;
}

bool Converter::NearOrigin(double x, double y) const {
  return std::fabs(x - originX_) <= nearX_ && std::fabs(y - originY_) <= nearY_;
}

void Converter::CheckForward(const Position& from, double x, double y, Result& result) const {
  if (std::fabs(from.longitude - centralMeridian_) <= nearLongitude_ && NearOrigin(x, y)) {
    return;
  }
  Position back;
  const bool there = XYGeo(Handle(), x, y, &back.latitude, &back.longitude) != 0;
  const double north = EarthRadius * (back.latitude - from.latitude);
  const double east = EarthRadius * std::cos(from.latitude) * std::remainder(back.longitude - from.longitude, TwoPi);
  if (!(there && std::hypot(north, east) <= RoundTripLimit)) {
    result.Add(Doubt::NoRoundTrip);
  }
}

void Converter::CheckInverse(double x, double y, const Position& to, Result& result) const {
  if (std::fabs(to.longitude - centralMeridian_) <= nearLongitude_ && NearOrigin(x, y)) {
    return;
  }
  double backX = 0;
  double backY = 0;
  const bool there = GeoXY(Handle(), &backX, &backY, to.latitude, to.longitude) != 0;
  if (!(there && std::hypot(backX - x, backY - y) * metresPerUnit_ <= RoundTripLimit)) {
    result.Add(Doubt::NoRoundTrip);
  }
}

}  // namespace latigo::cli
