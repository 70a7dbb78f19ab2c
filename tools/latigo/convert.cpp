// From one coordinate system to another.
#include <cmath>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "commands.h"
#include "config_check.h"
#include "converter.h"
#include "coordinate_system.h"
#include "error_text.h"
#include "operations.h"
#include "point_loop.h"
#include "semi_axes.h"
#include "streams.h"

namespace latigo::cli {

namespace {

constexpr double FlatteningTolerance = 1e-9;  // of the reciprocal, for the digits of a file

// One of the two systems.
struct Side {
  PointOptions options;
  bool geographic;
  Between between;

  std::string Name() const { return options.file + " [" + options.section + "]"; }
};

bool IsOneSection(const Options& one, const Options& other) {
  std::error_code failure;
  return std::filesystem::equivalent(NativePath(one.file), NativePath(other.file), failure) &&
         ConfigFile::Folded(one.section) == ConfigFile::Folded(other.section);
}

SemiAxes EllipsoidOf(GeodesyHandle handle) {
  GeodesyParams params;
  GetGeodesyParams(handle, &params, nullptr, nullptr);
  return SemiAxesOf(params.SemiMajorAxis, params.InvFlattening);
}

bool HasShift(const Side& side) {
  return ConfigFile(side.options.file).HasShift(side.options.section);
}

// Whether the section says how its datum lies to WGS-84: by a shift, also one of zero, or by the ellipsoid itself.
bool HasDatum(const Side& side, GeodesyHandle handle) {
  if (HasShift(side)) {
    return true;
  }
  GeodesyParams params;
  GetGeodesyParams(handle, &params, nullptr, nullptr);
  return params.SemiMajorAxis == Wgs84Axis && std::fabs(params.InvFlattening - Wgs84Flattening) < FlatteningTolerance;
}

bool SameShift(GeodesyHandle one, GeodesyHandle other) {
  EllDiff d;
  EllDiff e;
  return GetEllDiff(one, &d) != 0 && GetEllDiff(other, &e) != 0 &&  //
         d.DeltaX == e.DeltaX && d.DeltaY == e.DeltaY && d.DeltaZ == e.DeltaZ && d.DeltaScale == e.DeltaScale &&
         d.DeltaRX == e.DeltaRX && d.DeltaRY == e.DeltaRY && d.DeltaRZ == e.DeltaRZ && GridOf(one) == GridOf(other);
}

// Whether no shift is needed between the systems. Throws UsageError if the datums are not known well enough.
bool SameDatum(const ConvertOptions& options, const Side& from, const Converter& source, const Side& to,
               const Converter& target) {
  const SemiAxes first = EllipsoidOf(source.Handle());
  const SemiAxes second = EllipsoidOf(target.Handle());
  const bool sameShift = SameShift(source.Handle(), target.Handle());
  if (options.sameDatum) {
    const std::string names = from.Name() + " and " + to.Name();
    if (!Agree(first, second)) {
      throw UsageError(names + ": the ellipsoids differ, so the datum is not the same");
    }
    if (!sameShift && HasDatum(from, source.Handle()) && HasDatum(to, target.Handle())) {
      throw UsageError(names +
                       ": the datum shifts differ, so the datum is not the same; --same-datum is for a section " +
                       "without a datum shift, on another ellipsoid than WGS-84");
    }
    return true;
  }
  for (const auto& [side, handle] : {std::pair(&from, source.Handle()), std::pair(&to, target.Handle())}) {
    if (!HasDatum(*side, handle)) {
      throw UsageError(side->Name() + ": the section has no datum shift. If both systems have the same datum, state " +
                       "--same-datum; if this one is WGS-84, add the key DeltaX=0");
    }
  }
  return sameShift && first.a == second.a && first.b == second.b;
}

// Decides what goes through WGS-84: positions and heights between different datums; ellipsoidal heights of one datum if
// they lead to or from a geoid above WGS-84, by the shift of either section if the user says that the datum is one.
// Throws UsageError if the datums are not known well enough.
void SetShift(const ConvertOptions& options, Side& from, const Converter& source, Side& to, const Converter& target) {
  const bool shift = !SameDatum(options, from, source, to, target);
  const bool known = !options.sameDatum || HasShift(from) || HasShift(to);
  const bool geoidOnWgs84 = !options.geoidOnDatum && known;
  for (Side* const side : {&from, &to}) {
    side->between.shift = shift;
    side->between.heightShift = !shift && geoidOnWgs84 && options.heights == Heights::Geoid && !side->geographic &&
                                from.geographic != to.geographic;
  }
  if (options.sameDatum && HasShift(from) != HasShift(to)) {
    from.between.datum = HasShift(from) ? nullptr : target.Handle();
    to.between.datum = HasShift(to) ? nullptr : source.Handle();
  }
}

void RequireGeoid(const Side& side, const Converter& converter) {
  if (!side.geographic && !converter.HasGeoid()) {
    throw UsageError(side.Name() + ": the section has no geoid, which --heights geoid needs");
  }
}

// Adds the failure and the doubts of a step.
bool Succeeded(const Result& step, const Converter& converter, int firstDoubt, Result& result) {
  result.doubts |= step.doubts << firstDoubt;
  if (step.function == nullptr && step.fault == nullptr && FaultOf(step) == nullptr) {
    return true;
  }
  result.code = step.code;
  result.function = step.function;
  result.fault = step.fault != nullptr || step.function != nullptr ? step.fault : FaultOf(step);
  result.place = converter.Name();
  return false;
}

// The first system's coordinates to a position between the systems, in degrees, and an ellipsoidal height: on WGS-84,
// or on the datum of both.
void ToPosition(const Converter& source, const PointLine& point, bool geographic, Result& result) {
  if (!geographic) {
    Inverse(source, point, result);
    return;
  }
  Position position{point.first * RadiansPerDegree, point.second * RadiansPerDegree, point.third.value_or(0)};
  if (source.ToWgs84(position, result)) {
    source.WriteGeographic(position, result);
    if (point.third) {
      source.UseShiftedHeight(result);
      result.Add(position.h, Quantity::Length);
    }
  }
}

void FromPosition(const Converter& target, const PointLine& point, bool geographic, Result& result) {
  if (!geographic) {
    Forward(target, point, result);
    return;
  }
  Position position;
  if (target.ReadGeographic(point, position, result)) {
    target.WriteGeographic(position, result);
    if (point.third) {
      target.UseShiftedHeight(result);
      result.Add(position.h, Quantity::Length);
    }
  }
}

template <bool fromGeographic, bool toGeographic>
void Convert(const Converter& source, const PointLine& point, Result& result) {
  const Converter& target = *source.Target();
  Result first;
  ToPosition(source, point, fromGeographic, first);
  if (!Succeeded(first, source, 0, result)) {
    return;
  }
  PointLine between;
  between.first = first.values[0].value;
  between.second = first.values[1].value;
  if (point.third) {
    between.third = first.values[2].value;
  }
  Result second;
  FromPosition(target, between, toGeographic, second);
  if (Succeeded(second, target, Doubts, result)) {
    for (int i = 0; i < second.count; ++i) {
      result.Add(second.values[i].value, second.values[i].quantity);
    }
  }
}

constexpr auto ConvertOf(bool fromGeographic, bool toGeographic) {
  return fromGeographic ? (toGeographic ? Convert<true, true> : Convert<true, false>)
                        : (toGeographic ? Convert<false, true> : Convert<false, false>);
}

}  // namespace

int RunConvert(const ConvertOptions& options) {
  const Between between = {false, options.unshifted, options.geoidOnDatum, true,
                           options.heights == Heights::Ellipsoidal};
  Side from{options, options.fromGeographic, between};
  Side to{options, options.toGeographic, between};
  from.options.lonlat = false;  // positions between the systems are in one order
  to.options.file = options.to.empty() ? options.file : options.to;
  to.options.section = options.toSection;
  ChooseSection(to.options, "--to-section");
  if (IsOneSection(from.options, to.options) && from.geographic == to.geographic) {
    throw UsageError(from.Name() + ": both systems are the same; choose the second with --to and --to-section");
  }
  CheckSection(to.options);
  const Converter source(from.options, from.between);
  const Converter target(to.options, to.between);
  if (options.heights == Heights::Geoid) {
    RequireGeoid(from, source);
    RequireGeoid(to, target);
  }
  SetShift(options, from, source, to, target);
  const Order geographic = options.lonlat ? Order::LongitudeLatitude : Order::LatitudeLongitude;
  const Third third = options.noHeight                        ? Third::Ignored
                      : options.heights == Heights::Undecided ? Third::Undecided
                                                              : Third::Height;
  PointCommand command = {from.geographic ? geographic : Order::Grid, 2, third,
                          ConvertOf(from.geographic, to.geographic), from.between};
  command.heightsAreStated = options.heights != Heights::Undecided;
  command.makeTarget = [&to] { return std::make_unique<const Converter>(to.options, to.between); };
  command.names = !to.geographic   ? std::vector<std::string_view>{"easting", "northing", "height"}
                  : options.lonlat ? std::vector<std::string_view>{"longitude", "latitude", "height"}
                                   : std::vector<std::string_view>{"latitude", "longitude", "height"};
  return RunPoints(from.options, command);
}

}  // namespace latigo::cli
