#include "converter.h"

#include <cmath>
#include <utility>

namespace latigo::cli {

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double TwoPi = 6.283185307179586;

Object OpenOrThrow(const Options& options) {
  Opened opened = OpenSection(options.file, options.section);
  if (opened.code != 0) {
    throw UsageError(options.file + " [" + options.section + "]: " + opened.explanation);
  }
  return std::move(opened.object);
}

}  // namespace

Converter::Converter(const Options& options) : options_(options), object_(OpenOrThrow(options)) {
  GeodesyParams params;
  GetGeodesyParams(Handle(), &params, nullptr, nullptr);
  centralMeridian_ = params.CentralMeridian;
  char path[1] = "";
  double constant = 0;
  GetGeoid(Handle(), path, sizeof path, &constant);
  hasGeoid_ = path[0] != '\0' || constant != 0;
  if (!options.localGrid) {
    const Adjustment none = {0, 0, 0, 0, 1, 0, 0};
    SetAdjustment(Handle(), &none);
  }
}

bool Converter::ReadGeographic(const PointLine& point, Position& position, Result& result) const {
  auto& [latitude, longitude, h] = position;
  latitude = point.first * RadiansPerDegree;
  longitude = point.second * RadiansPerDegree;
  h = point.third.value_or(0);
  if (options_.wgs84 && !result.Call(WGS84Conv(Handle(), &latitude, &longitude, &h), "WGS84Conv")) {
    return false;
  }
  // The nearest turn to the central meridian, since not every projection wraps longitudes.
  if (std::fabs(longitude - centralMeridian_) > Pi) {
    longitude -= std::copysign(TwoPi, longitude - centralMeridian_);
  }
  return true;
}

void Converter::WriteGeographic(const Position& position, Result& result) const {
  const double longitude = position.longitude / RadiansPerDegree;
  result.Add(position.latitude / RadiansPerDegree, Quantity::Latitude);
  result.Add(std::fabs(longitude) <= 180 ? longitude : std::remainder(longitude, 360), Quantity::Longitude);
  if (options_.lonlat) {
    std::swap(result.values[0], result.values[1]);
  }
}

bool Converter::ReadUndulation(const PointLine& point, const Position& at, double& undulation, Result& result) const {
  undulation = 0;
  return !point.third || !hasGeoid_ ||
         result.Call(Undulation(Handle(), at.latitude, at.longitude, &undulation), "Undulation");
}

}  // namespace latigo::cli
