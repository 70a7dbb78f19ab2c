#include "factors.h"

#include <cmath>

#include "../picture/factors.h"
#include "commands.h"

namespace latigo::cli {

namespace {

constexpr double LargestError = 1e-9;  // of a factor that is not doubtful

// Heights of points on the ground or above it, metres: others are mistakes, as coordinates of another system.
constexpr double LowestHeight = -100e3;
constexpr double HighestHeight = 10000e3;

void AddFactors(const Converter& converter, const Position& at, bool withHeight, Result& result) {
  if (withHeight && !(at.h >= LowestHeight && at.h <= HighestHeight)) {
    result.fault = "the height above the ellipsoid is not between -100 km and 10 000 km";
    return;
  }
  const picture::Differences differences(converter.Handle());
  picture::Factors factors;
  if (!differences.At(at.latitude, at.longitude, factors)) {
    result.fault = NoFactors;
    return;
  }
  if (!(factors.error <= LargestError)) {
    result.Add(Doubt::RoughFactors);
  }
  result.Add(factors.convergence / RadiansPerDegree, Quantity::Angle);
  result.Add(factors.h, Quantity::Factor);
  result.Add(factors.k, Quantity::Factor);
  result.Add(factors.area, Quantity::Factor);
  result.Add(factors.omega / RadiansPerDegree, Quantity::Angle);
  if (withHeight) {
    const double R = differences.MeanRadius(at.latitude);
    const double elevation = R / (R + at.h);
    result.Add(elevation, Quantity::Factor);
    result.Add(factors.Mean() * elevation, Quantity::Factor);
  }
}

}  // namespace

void FactorsOfPosition(const Converter& converter, const PointLine& point, Result& result) {
  Position at;
  double x = 0;
  double y = 0;
  if (converter.ReadGeographic(point, at, result) &&
      result.Call(GeoXY(converter.Handle(), &x, &y, at.latitude, at.longitude), "GeoXY")) {
    converter.CheckForward(at, x, y, result);
    if (point.third) {
      converter.UseShiftedHeight(result);
    }
    AddFactors(converter, at, point.third.has_value(), result);
  }
}

void FactorsOfGrid(const Converter& converter, const PointLine& point, Result& result) {
  Position at;
  if (result.Call(XYGeo(converter.Handle(), point.first, point.second, &at.latitude, &at.longitude), "XYGeo")) {
    converter.CheckInverse(point.first, point.second, at, result);
    if (!point.third || converter.FromGridHeight(point, at, result)) {
      AddFactors(converter, at, point.third.has_value(), result);
    }
  }
}

}  // namespace latigo::cli
