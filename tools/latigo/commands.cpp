#include "commands.h"

#include <cmath>
#include <cstdio>

#include "converter.h"
#include "point_loop.h"
#include "visible.h"

namespace latigo::cli {

namespace {

Order GeographicOrder(const Options& options) {
  return options.lonlat ? Order::LongitudeLatitude : Order::LatitudeLongitude;
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

void ScaleFactor(const Converter& converter, const PointLine& point, Result& result) {
  double x = point.first;
  double y = point.second;
  if (!converter.CommandOptions().grid) {
    Position at;
    if (!converter.ReadGeographic(point, at, result) ||
        !result.Call(GeoXY(converter.Handle(), &x, &y, at.latitude, at.longitude), "GeoXY")) {
      return;
    }
    converter.CheckForward(at, x, y, result);
  }
  const double k = Scale(converter.Handle(), x, y);
  if (result.Call(GetGeodesyError() == 0 ? 1 : 0, "Scale")) {
    result.Add(k, Quantity::Factor);
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

void Distance(const Converter& converter, const PointLine& line, Result& result) {
  const double latitude1 = line.first * RadiansPerDegree;
  const double longitude1 = line.second * RadiansPerDegree;
  const double latitude2 = line.toFirst * RadiansPerDegree;
  // The near way round.
  const double longitude2 = (line.second + std::remainder(line.toSecond - line.second, 360)) * RadiansPerDegree;
  const auto measure = converter.CommandOptions().rhumb ? RLineLL : GCircLL;
  double azimuth = 0;
  result.Add(measure(converter.Handle(), latitude1, longitude1, latitude2, longitude2, &azimuth), Quantity::Length);
  result.Add(std::fmod(azimuth / RadiansPerDegree + 360, 360), Quantity::Azimuth);
}

}  // namespace

int RunForward(const Options& options) {
  return RunPoints(options, {GeographicOrder(options), 2, Third::Height, Forward});
}

int RunInverse(const Options& options) {
  return RunPoints(options, {Order::Grid, 2, Third::Height, Inverse});
}

int RunScale(Options options) {
  options.localGrid = false;  // the factor belongs to the projection's own coordinates
  return RunPoints(options, {options.grid ? Order::Grid : GeographicOrder(options), 1, Third::Carried, ScaleFactor});
}

int RunUndulation(const Options& options) {
  RequireSection(ConfigFile(options.file), options);
  if (!Converter(options).HasGeoid()) {
    const std::string text = options.file + " [" + options.section + "]: the section has no geoid";
    if (options.strict) {
      throw UsageError(text);
    }
    Message(options.file + " [" + options.section + "]: warning: the section has no geoid: every undulation is 0");
  }
  return RunPoints(options, {GeographicOrder(options), 1, Third::Carried, GeoidUndulation});
}

int RunEcef(const Options& options) {
  return options.inverse ? RunPoints(options, {Order::Grid, 3, Third::Needed, FromCartesian})
                         : RunPoints(options, {GeographicOrder(options), 3, Third::Used, ToCartesian});
}

int RunDistance(const Options& options) {
  RequireSection(ConfigFile(options.file), options);
  char unit[16] = "units";
  GetLocalName(Converter(options).Handle(), LATIGO_NAME_UNIT_SHORT, "", unit,
               sizeof unit);  // a unit without a name leaves the word
  return RunPoints(options, {GeographicOrder(options), 2, Third::Used, Distance, ParseTwoPoints, unit});
}

}  // namespace latigo::cli
