#include "commands.h"

#include <cstdio>
#include <string_view>
#include <utility>
#include <vector>

#include "arc_to_chord.h"
#include "converter.h"
#include "distances.h"
#include "factors.h"
#include "operations.h"
#include "point_loop.h"
#include "visible.h"

namespace latigo::cli {

namespace {

Order GeographicOrder(const PointOptions& options) {
  return options.lonlat ? Order::LongitudeLatitude : Order::LatitudeLongitude;
}

// The names of output columns.
using Names = std::vector<std::string_view>;

const Names GridNames = {"easting", "northing", "height"};

Names GeographicNames(const PointOptions& options) {
  return options.lonlat ? Names{"longitude", "latitude", "height"} : Names{"latitude", "longitude", "height"};
}

int RunNamed(const PointOptions& options, PointCommand command, Names names) {
  command.names = std::move(names);
  return RunPoints(options, command);
}

Between BetweenOf(const ShiftOptions& options, bool geoidOnDatum = false) {
  return {options.wgs84, options.unshifted, geoidOnDatum};
}

}  // namespace

int RunForward(const GridOptions& options) {
  return RunNamed(options,
                  {GeographicOrder(options), 2, options.noHeight ? Third::Ignored : Third::Height, Forward,
                   BetweenOf(options, options.geoidOnDatum)},
                  GridNames);
}

int RunInverse(const GridOptions& options) {
  return RunNamed(options,
                  {Order::Grid, 2, options.noHeight ? Third::Ignored : Third::Height, Inverse,
                   BetweenOf(options, options.geoidOnDatum)},
                  GeographicNames(options));
}

int RunScale(const ScaleOptions& options) {
  Between between = BetweenOf(options);
  between.localGrid = false;  // the factor is that of the projection's coordinates
  return RunNamed(options,
                  options.grid ? PointCommand{Order::Grid, 1, Third::Carried, ScaleOfGrid, between}
                               : PointCommand{GeographicOrder(options), 1, Third::Carried, ScaleOfPosition, between},
                  {"scale"});
}

int RunFactors(const FactorsOptions& options) {
  Between between = BetweenOf(options, options.geoidOnDatum);
  if (options.grid) {  // no position is on WGS-84, only the geoid
    between.heightShift = options.wgs84 && !options.geoidOnDatum;
    between.shift = false;
  }
  PointCommand command{options.grid ? Order::Grid : GeographicOrder(options), 5,
                       options.noHeight ? Third::Ignored : Third::Height,
                       options.grid ? FactorsOfGrid : FactorsOfPosition, between};
  command.heightValues = 2;
  return RunNamed(options, command,
                  {"convergence", "scale_meridian", "scale_parallel", "scale_area", "angular_distortion",
                   "elevation_factor", "combined_factor"});
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
  return RunNamed(options, {GeographicOrder(options), 1, Third::Carried, GeoidUndulation, between}, {"undulation"});
}

int RunEcef(const EcefOptions& options) {
  const Between between = BetweenOf(options);
  return options.inverse
             ? RunNamed(options, {Order::Grid, 3, Third::Needed, FromCartesian, between}, GeographicNames(options))
             : RunNamed(options, {GeographicOrder(options), 3, Third::Used, ToCartesian, between}, {"X", "Y", "Z"});
}

int RunDistance(const DistanceOptions& options) {
  RequireSection(ConfigFile(options.file), options);
  char unit[16] = "units";
  // For a unit without a name the default text remains.
  GetLocalName(Converter(options, {}).Handle(), LATIGO_NAME_UNIT_SHORT, "", unit, sizeof unit);
  const auto measure = options.rhumb        ? DistanceOfRhumbLine
                       : options.arcToChord ? DistanceAndArcToChord
                                            : DistanceOfGreatCircle;
  Names names = {"distance", "unit", "azimuth"};
  if (options.arcToChord) {
    names.insert(names.end(), {"arc_to_chord_from", "arc_to_chord_to"});
  }
  return RunNamed(options,
                  {GeographicOrder(options), options.arcToChord ? 4 : 2, Third::Used, measure, BetweenOf(options),
                   ParseTwoPoints, unit},
                  names);
}

}  // namespace latigo::cli
