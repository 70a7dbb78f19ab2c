#include "operations.h"

#include <cmath>
#include <span>

#include "commands.h"

namespace latigo::cli {

namespace {

constexpr double LargestLatitude = 90 + 1e-9;  // degrees; rounding at the pole is allowed
constexpr const char* BeyondPole = "the result is beyond the pole";

// The distance by one of the library's functions.
template <auto measure>
void Distance(const Converter& converter, const PointLine& line, Result& result) {
  const double latitude1 = line.first * RadiansPerDegree;
  const double longitude1 = line.second * RadiansPerDegree;
  const double latitude2 = line.toFirst * RadiansPerDegree;
  // The longitude difference, wrapped.
  const double longitude2 = (line.second + std::remainder(line.toSecond - line.second, 360)) * RadiansPerDegree;
  double azimuth = 0;
  result.Add(measure(converter.Handle(), latitude1, longitude1, latitude2, longitude2, &azimuth), Quantity::Length);
  result.Add(std::fmod(azimuth / RadiansPerDegree + 360, 360), Quantity::Azimuth);
}

}  // namespace

void Forward(const Converter& converter, const PointLine& point, Result& result) {
  Position from;
  double x = 0;
  double y = 0;
  double height = 0;
  if (!converter.ReadGeographic(point, from, result) ||
      !result.Call(GeoXY(converter.Handle(), &x, &y, from.latitude, from.longitude), "GeoXY") ||
      (point.third && !converter.ToGridHeight(point, from, height, result))) {
    return;
  }
  converter.CheckForward(from, x, y, result);
  result.Add(x, Quantity::Length);
  result.Add(y, Quantity::Length);
  if (point.third) {
    result.Add(height, Quantity::Length);
  }
}

void Inverse(const Converter& converter, const PointLine& point, Result& result) {
  Position to;
  if (!result.Call(XYGeo(converter.Handle(), point.first, point.second, &to.latitude, &to.longitude), "XYGeo")) {
    return;
  }
  converter.CheckInverse(point.first, point.second, to, result);
  if (std::fabs(to.latitude) > LargestLatitude * RadiansPerDegree) {  // a datum shift would make it a latitude again
    result.fault = BeyondPole;
    return;
  }
  if (!converter.FromGridHeight(point, to, result)) {
    return;
  }
  converter.WriteGeographic(to, result);
  if (point.third) {
    result.Add(to.h, Quantity::Length);
  }
}

void ScaleOfGrid(const Converter& converter, const PointLine& point, Result& result) {
  const double k = Scale(converter.Handle(), point.first, point.second);
  if (result.Call(GetGeodesyError() == 0 ? 1 : 0, "Scale")) {
    result.Add(k, Quantity::Factor);
  }
}

void ScaleOfPosition(const Converter& converter, const PointLine& point, Result& result) {
  Position at;
  PointLine grid;
  if (converter.ReadGeographic(point, at, result) &&
      result.Call(GeoXY(converter.Handle(), &grid.first, &grid.second, at.latitude, at.longitude), "GeoXY")) {
    converter.CheckForward(at, grid.first, grid.second, result);
    ScaleOfGrid(converter, grid, result);
  }
}

void GeoidUndulation(const Converter& converter, const PointLine& point, Result& result) {
  Position at;
  double undulation = 0;
  if (converter.ReadGeographic(point, at, result) && converter.ReadUndulation(point, at, undulation, result)) {
    result.Add(undulation, Quantity::Length);
  }
}

void ToCartesian(const Converter& converter, const PointLine& point, Result& result) {
  Position from;
  if (!converter.ReadGeographic(point, from, result)) {
    return;
  }
  converter.UseShiftedHeight(result);
  double x = 0;
  double y = 0;
  double z = 0;
  result.Call(GeoECEF(converter.Handle(), &x, &y, &z, from.latitude, from.longitude, from.h), "GeoECEF");
  for (const double length : {x, y, z}) {
    result.Add(length, Quantity::Length);
  }
}

void FromCartesian(const Converter& converter, const PointLine& point, Result& result) {
  const double z = point.third.value_or(0);
  Position to;
  result.Call(ECEFGeo(converter.Handle(), point.first, point.second, z, &to.latitude, &to.longitude, &to.h), "ECEFGeo");
  if (!converter.ToWgs84(to, result)) {
    return;
  }
  converter.UseShiftedHeight(result);
  converter.WriteGeographic(to, result);
  result.Add(to.h, Quantity::Length);
}

void GreatCircle(const Converter& converter, const PointLine& line, Result& result) {
  Distance<GCircLL>(converter, line, result);
}

void RhumbLine(const Converter& converter, const PointLine& line, Result& result) {
  Distance<RLineLL>(converter, line, result);
}

const char* FaultOf(const Result& result) {
  for (const auto& [value, quantity] : std::span(result.values).first(static_cast<std::size_t>(result.count))) {
    if (!std::isfinite(value)) {
      return "the result is not a finite number";
    }
    if (quantity == Quantity::Latitude && std::fabs(value) > LargestLatitude) {
      return BeyondPole;
    }
  }
  return nullptr;
}

}  // namespace latigo::cli
