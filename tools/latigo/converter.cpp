#include "converter.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/ascii.h"
#include "visible.h"

namespace latigo::cli {

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double TwoPi = 6.283185307179586;

constexpr std::size_t PathSize = 512;
constexpr int LatitudeAndLongitude = 2;   // values per node of a datum grid without heights
constexpr double HeightTolerance = 1e-6;  // metres
constexpr int HeightIterations = 10;

double Wrapped(double longitude) {
  return std::fabs(longitude) <= Pi ? longitude : std::remainder(longitude, TwoPi);
}

// Opens a section, with its local grid or without. Throws UsageError if it does not open.
api::Geodesy Open(const Options& options, bool localGrid) {
  Opened opened = OpenSection(options.file, options.section);
  if (opened.code != 0) {
    throw UsageError(options.file + " [" + options.section + "]: " + opened.explanation);
  }
  if (!localGrid) {
    const Adjustment none = {0, 0, 0, 0, 1, 0, 0};
    SetAdjustment(opened.object.Handle(), &none);
  }
  return std::move(opened.object);
}

// Sets the datum shift of one object in another. Throws UsageError if the datum grid does not open again.
void CopyShift(GeodesyHandle from, GeodesyHandle to, const std::string& name) {
  EllDiff parameters;
  const std::string grid = GridOf(from);
  const bool copied = grid.empty() ? GetEllDiff(from, &parameters) != 0 && SetEllDiff(to, &parameters) != 0
                                   : SetEllModel(to, grid.c_str()) != 0;
  if (!copied) {
    throw UsageError(name + ": " + ErrorText(GetGeodesyError(), grid.empty() ? "SetEllDiff" : "SetEllModel"));
  }
}

}  // namespace

std::string GridOf(GeodesyHandle handle) {
  char path[PathSize] = "";
  return GetEllModel(handle, path, sizeof path) != 0 ? path : "";
}

Converter::Converter(const PointOptions& options, const Between& between)
    : between_(between),
      lonlat_(options.lonlat),
      name_(options.file + " [" + options.section + "]"),
      object_(Open(options, between.localGrid)),
      roundTrip_(Handle()) {
  char path[PathSize] = "";
  double constant = 0;
  GetGeoid(Handle(), path, sizeof path, &constant);
  hasGeoid_ = !between.noGeoid && (path[0] != '\0' || constant != 0);
  hasVerticalUnit_ = ConfigFile(options.file).HasValue(options.section, "VertUnit");
  if (between.datum != nullptr) {
    CopyShift(between.datum, Handle(), name_);
  }
  const bool shifts = between.shift || between.heightShift;
  if (const std::string grid = GridOf(Handle()); shifts && !grid.empty()) {
    datumGrid_ = std::make_unique<InterpFile>(grid.c_str(), false);
    keepsHeights_ = datumGrid_->Depth() == LatitudeAndLongitude;
  }
}

std::string Converter::TextOf(std::size_t doubt) const {
  constexpr unsigned OfLine = static_cast<unsigned>(Doubt::WholeHeight) | static_cast<unsigned>(Doubt::GreatHeight);
  const bool ofSystem = target_ && (1U << doubt & OfLine) == 0;
  const Converter& system = doubt < Doubts ? *this : *target_;
  return (ofSystem ? Visible(system.Name()) + ": " : "") + DoubtTexts[doubt % Doubts];
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
  if (const double difference = longitude - roundTrip_.CentralMeridian(); std::fabs(difference) > Pi) {
    longitude -= std::copysign(TwoPi, difference);
  }
  return true;
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
  return !between_.shift || OwnToWgs84(position, result);
}

bool Converter::OwnToWgs84(Position& position, Result& result) const {
  return InDatumGrid(position.latitude, position.longitude, result) &&
         result.Call(InvWGS84Conv(Handle(), &position.latitude, &position.longitude, &position.h), "InvWGS84Conv");
}

bool Converter::UndulationAt(double latitude, double longitude, double& undulation, Result& result) const {
  return result.Call(Undulation(Handle(), latitude, Wrapped(longitude), &undulation), "Undulation");
}

bool Converter::ReadUndulation(const PointLine& point, const Position& position, double& undulation,
                               Result& result) const {
  return GeoidOnWgs84()
             ? UndulationAt(point.first * RadiansPerDegree, point.second * RadiansPerDegree, undulation, result)
             : UndulationAt(position.latitude, position.longitude, undulation, result);
}

bool Converter::ToGridHeight(const PointLine& point, const Position& position, double& height, Result& result) const {
  double undulation = 0;
  if (between_.heightShift) {
    Position wgs84 = position;
    if (!OwnToWgs84(wgs84, result) || !UndulationAt(wgs84.latitude, wgs84.longitude, undulation, result)) {
      return false;
    }
    height = wgs84.h - undulation;
    UseShiftedHeight(result);
  } else {
    if (hasGeoid_ && !ReadUndulation(point, position, undulation, result)) {
      return false;
    }
    // The undulation above WGS-84 is subtracted from the height above WGS-84, before the shift.
    const bool shifted = !(hasGeoid_ && GeoidOnWgs84());
    height = (shifted ? position.h : *point.third) - undulation;
    if (shifted) {
      UseShiftedHeight(result);
    }
  }
  return !hasVerticalUnit_ || result.Call(VConvert(Handle(), &height, LATIGO_FROM_METRES), "VConvert");
}

bool Converter::FromGridHeight(const PointLine& point, Position& position, Result& result) const {
  double height = point.third.value_or(0);
  if (hasVerticalUnit_ && !result.Call(VConvert(Handle(), &height, LATIGO_TO_METRES), "VConvert")) {
    return false;
  }
  const bool withGeoid = hasGeoid_ && point.third;
  double undulation = 0;
  if (!between_.shift && !(between_.heightShift && withGeoid)) {
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
      break;
    }
    if (!UndulationAt(position.latitude, position.longitude, undulation, result)) {
      return false;
    }
    const double miss = height + undulation - position.h;
    position.h = height + undulation;
    if (!(std::fabs(miss) > HeightTolerance)) {
      break;
    }
    own.h += miss;
  }
  if (between_.heightShift) {
    position = own;
  }
  if (point.third && (between_.heightShift || !withGeoid || !GeoidOnWgs84())) {
    UseShiftedHeight(result);
  }
  return true;
}

bool Converter::InDatumGrid(double latitude, double& longitude, Result& result) const {
  if (!datumGrid_) {
    return true;
  }
  longitude = Wrapped(longitude);
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

}  // namespace latigo::cli
