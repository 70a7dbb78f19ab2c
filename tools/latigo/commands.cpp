#include "commands.h"

#include <cstdio>

#include "converter.h"
#include "factors.h"
#include "lines.h"
#include "operations.h"
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

int RunFactors(const FactorsOptions& options) {
  PointCommand command{options.grid ? Order::Grid : GeographicOrder(options), 5,
                       options.noHeight ? Third::Ignored : Third::Height,
                       options.grid ? FactorsOfGrid : FactorsOfPosition, BetweenOf(options, options.geoidOnDatum)};
  command.heightValues = 2;
  return RunPoints(options, command);
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
  const Between between = BetweenOf(options);
  return options.inverse ? RunPoints(options, {Order::Grid, 3, Third::Needed, FromCartesian, between})
                         : RunPoints(options, {GeographicOrder(options), 3, Third::Used, ToCartesian, between});
}

int RunDistance(const DistanceOptions& options) {
  RequireSection(ConfigFile(options.file), options);
  char unit[16] = "units";
  // For a unit without a name the default text remains.
  GetLocalName(Converter(options, {}).Handle(), LATIGO_NAME_UNIT_SHORT, "", unit, sizeof unit);
  const auto measure = options.rhumb        ? DistanceOfRhumbLine
                       : options.arcToChord ? DistanceAndArcToChord
                                            : DistanceOfGreatCircle;
  return RunPoints(options, {GeographicOrder(options), options.arcToChord ? 4 : 2, Third::Used, measure,
                             BetweenOf(options), ParseTwoPoints, unit});
}

}  // namespace latigo::cli
