#include "commands.h"

#include <cmath>
#include <cstdio>

#include "converter.h"
#include "point_loop.h"
#include "visible.h"

namespace latigo::cli {

namespace {

Order GeographicOrder(const PointOptions& options) {
  return options.lonlat ? Order::LongitudeLatitude : Order::LatitudeLongitude;
}

Between BetweenOf(const ShiftOptions& options, bool geoidOnDatum = false) {
  return {options.wgs84, options.unshifted, geoidOnDatum};
}

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
  converter.WriteGeographic(to, result);
  result.Add(to.h, Quantity::Length);
}

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

int RunForward(const GridOptions& options) {
  return RunPoints(options, {GeographicOrder(options), 2, options.noHeight ? Third::Ignored : Third::Height, Forward,
                             BetweenOf(options, options.geoidOnDatum)});
}

int RunInverse(const GridOptions& options) {
  return RunPoints(options, {Order::Grid, 2, options.noHeight ? Third::Ignored : Third::Height, Inverse,
                             BetweenOf(options, options.geoidOnDatum)});
}

int RunScale(const ScaleOptions& options) {
  Between between = BetweenOf(options);
  between.localGrid = false;  // the factor is that of the projection's coordinates
  return RunPoints(options, options.grid
                                ? PointCommand{Order::Grid, 1, Third::Carried, ScaleOfGrid, between}
                                : PointCommand{GeographicOrder(options), 1, Third::Carried, ScaleOfPosition, between});
}

int RunUndulation(const UndulationOptions& options) {
  const Between between = BetweenOf(options, options.geoidOnDatum);
  RequireSection(ConfigFile(options.file), options);
  if (!Converter(options, between).HasGeoid()) {
    const std::string place = options.file + " [" + options.section + "]: ";
    if (options.strict) {
      throw UsageError(place + "the section has no geoid");
    }
    Message(place + "warning: the section has no geoid: every undulation is 0");
  }
  return RunPoints(options, {GeographicOrder(options), 1, Third::Carried, GeoidUndulation, between});
}

int RunEcef(const EcefOptions& options) {
  return options.inverse ? RunPoints(options, {Order::Grid, 3, Third::Needed, FromCartesian})
                         : RunPoints(options, {GeographicOrder(options), 3, Third::Used, ToCartesian});
}

int RunDistance(const DistanceOptions& options) {
  RequireSection(ConfigFile(options.file), options);
  char unit[16] = "units";
  // For a unit without a name the default text remains.
  GetLocalName(Converter(options, {}).Handle(), LATIGO_NAME_UNIT_SHORT, "", unit, sizeof unit);
  return RunPoints(options, {GeographicOrder(options),
                             2,
                             Third::Used,
                             options.rhumb ? Distance<RLineLL> : Distance<GCircLL>,
                             {},
                             ParseTwoPoints,
                             unit});
}

}  // namespace latigo::cli
