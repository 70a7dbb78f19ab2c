#include "operations.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace latigo::python {

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double TwoPi = 6.283185307179586;
constexpr double HeightTolerance = 1e-6;  // metres
constexpr int HeightIterations = 10;
// Degrees; rounding is allowed.
constexpr double LargestLatitude = 90 + 1e-9;
constexpr double LargestLongitude = 360 + 1e-9;

double In(const Options& options, double angle) {
  return options.radians ? angle : api::FromDegrees(angle);
}
double Out(const Options& options, double angle) {
  return options.radians ? angle : api::ToDegrees(angle);
}
double Turn(const Options& options) {
  return options.radians ? TwoPi : 360;
}

double Wrapped(double longitude) {
  return std::fabs(longitude) <= Pi ? longitude : std::remainder(longitude, TwoPi);
}

// One point on its way through the calls of the library. Radians and metres.
struct Point {
  Handle& handle;
  const Options& options;
  Outcome outcome{};
  double latitude = 0;
  double longitude = 0;
  double h = 0;

  void Add(cli::Doubt doubt, bool applies) { outcome.doubts |= applies ? static_cast<unsigned>(doubt) : 0U; }

  // Records the outcome of a call; true if it succeeded.
  bool Call(std::int32_t success, const char* function) {
    if (success == 0) {
      outcome.code = GetGeodesyError();
      outcome.function = function;
    }
    return success != 0;
  }

  bool Fail(std::int32_t fault) {
    outcome.code = fault;
    return false;
  }

  // False if the point fails because a latitude, given or computed, is beyond the pole.
  bool WithinPoles(double phi) { return !(std::fabs(phi) > api::FromDegrees(LargestLatitude)) || Fail(BeyondPole); }

  // Takes a position given; false if the point fails because it is beyond the pole or a turn.
  bool Take(const double* in) {
    latitude = In(options, in[0]);
    longitude = In(options, in[1]);
    return WithinPoles(latitude) && (!(std::fabs(longitude) > api::FromDegrees(LargestLongitude)) || Fail(BeyondTurn));
  }

  // False if the point fails because the datum grid has no value there. Brings the longitude within half a turn, where
  // the library looks it up in a grid.
  bool InDatumGrid() {
    if (handle.Area() == nullptr) {
      return true;
    }
    longitude = Wrapped(longitude);
    const std::int32_t code = handle.Area()->CodeAt(latitude, longitude);
    Add(cli::Doubt::Unshifted, code != 0);
    return code == 0 || options.unshifted || Fail(code);
  }

  // After a shift whose height is a result.
  void UseShiftedHeight() { Add(cli::Doubt::KeptHeight, handle.Area() != nullptr && handle.Area()->KeepsHeights()); }

  bool FromWgs84() { return InDatumGrid() && Call(WGS84Conv(handle.Object(), &latitude, &longitude, &h), "WGS84Conv"); }
  bool ToWgs84() { return Call(InvWGS84Conv(handle.Object(), &latitude, &longitude, &h), "InvWGS84Conv"); }

  bool ForwardFrom(GeodesyHandle object, const cli::RoundTrip& roundTrip, double* xy) {
    if (!Call(GeoXY(object, &xy[0], &xy[1], latitude, longitude), "GeoXY")) {
      return false;
    }
    Add(cli::Doubt::NoRoundTrip, !roundTrip.HoldsForward(latitude, longitude, xy[0], xy[1]));
    return true;
  }

  // The input position on the object's datum, with its longitude within half a turn of the central meridian, since not
  // every projection wraps longitudes.
  bool Read(const double* in) {
    h = options.height ? in[2] : 0;
    if (!Take(in) || (options.wgs84 && !FromWgs84())) {
      return false;
    }
    const double difference = longitude - handle.RoundTrip().CentralMeridian();
    if (std::fabs(difference) > Pi) {
      longitude -= std::copysign(TwoPi, difference);
    }
    return true;
  }

  // Writes a position and checks it.
  bool Write(double* out) {
    out[0] = Out(options, latitude);
    out[1] = Out(options, longitude);
    const double turn = Turn(options);
    if (std::fabs(out[1]) > turn / 2) {
      out[1] = std::remainder(out[1], turn);
    }
    return WithinPoles(latitude);
  }

  bool GeoidOnWgs84() const { return options.wgs84 && !options.geoidOnDatum; }

  bool UndulationAt(double phi, double lambda, double& undulation) {
    return Call(::Undulation(handle.Object(), phi, Wrapped(lambda), &undulation), "Undulation");
  }
  // At an input position, of which Read has made the position on the object's datum.
  bool ReadUndulation(const double* in, double& undulation) {
    return GeoidOnWgs84() ? UndulationAt(In(options, in[0]), In(options, in[1]), undulation)
                          : UndulationAt(latitude, longitude, undulation);
  }

  bool ToGridHeight(const double* in, double& height) {
    double undulation = 0;
    if (handle.HasGeoid() && !ReadUndulation(in, undulation)) {
      return false;
    }
    // The undulation above WGS-84 is subtracted from the height above WGS-84, before the shift.
    const bool given = handle.HasGeoid() && GeoidOnWgs84();
    height = (given ? in[2] : h) - undulation;
    if (options.wgs84 && !given) {
      UseShiftedHeight();
    }
    return !handle.HasVerticalUnit() || Call(VConvert(handle.Object(), &height, LATIGO_FROM_METRES), "VConvert");
  }

  // To the output position: from the object's datum and a height beside grid coordinates.
  bool FromGridHeight(double height) {
    if (handle.HasVerticalUnit() && !Call(VConvert(handle.Object(), &height, LATIGO_TO_METRES), "VConvert")) {
      return false;
    }
    if (options.wgs84 && !InDatumGrid()) {
      return false;
    }
    const bool withGeoid = handle.HasGeoid() && options.height;
    double undulation = 0;
    if (withGeoid && !GeoidOnWgs84() && !UndulationAt(latitude, longitude, undulation)) {
      return false;
    }
    h = height + undulation;
    if (!options.wgs84) {
      return true;
    }
    if (withGeoid && GeoidOnWgs84()) {
      return ToWgs84AtHeight(height);
    }
    if (options.height) {
      UseShiftedHeight();
    }
    return ToWgs84();
  }

  // Given is the height above WGS-84 less the undulation there, but the shift needs the height above the object's
  // ellipsoid. It is found by correcting the difference, which the shift changes by about 1e-5 of itself.
  bool ToWgs84AtHeight(double height) {
    const double phi = latitude;
    const double lambda = longitude;
    double own = height;
    for (int i = 0; i < HeightIterations; ++i) {
      latitude = phi;
      longitude = lambda;
      h = own;
      double undulation = 0;
      if (!ToWgs84() || !UndulationAt(latitude, longitude, undulation)) {
        return false;
      }
      const double miss = height + undulation - h;
      h = height + undulation;
      if (!(std::fabs(miss) > HeightTolerance)) {
        break;
      }
      own += miss;
    }
    return true;
  }
};

Outcome Forward(Handle& handle, const Options& options, const double* in, double* out) {
  Point point{handle, options};
  if (point.Read(in) && point.ForwardFrom(handle.Object(), handle.RoundTrip(), out) && options.height) {
    point.ToGridHeight(in, out[2]);
  }
  return point.outcome;
}

Outcome Inverse(Handle& handle, const Options& options, const double* in, double* out) {
  Point point{handle, options};
  if (!point.Call(XYGeo(handle.Object(), in[0], in[1], &point.latitude, &point.longitude), "XYGeo")) {
    return point.outcome;
  }
  point.Add(cli::Doubt::NoRoundTrip, !handle.RoundTrip().HoldsInverse(in[0], in[1], point.latitude, point.longitude));
  // Checked before a datum shift, which would make it a latitude again.
  if (point.WithinPoles(point.latitude) && point.FromGridHeight(options.height ? in[2] : 0) && point.Write(out) &&
      options.height) {
    out[2] = point.h;
  }
  return point.outcome;
}

template <bool to>
Outcome Datum(Handle& handle, const Options& options, const double* in, double* out) {
  Point point{handle, options};
  point.h = options.height ? in[2] : 0;
  if (point.Take(in) && (to ? point.InDatumGrid() && point.ToWgs84() : point.FromWgs84()) && point.Write(out) &&
      options.height) {
    point.UseShiftedHeight();
    out[2] = point.h;
  }
  return point.outcome;
}

Outcome ScaleAtGrid(Handle& handle, const Options& options, const double* in, double* out) {
  Point point{handle, options};
  out[0] = ::Scale(handle.WithoutLocalGrid(), in[0], in[1]);
  point.Call(GetGeodesyError() == 0 ? 1 : 0, "Scale");
  return point.outcome;
}

Outcome Scale(Handle& handle, const Options& options, const double* in, double* out) {
  Point point{handle, options};
  std::array<double, 2> grid{};
  if (!point.Read(in) ||
      !point.ForwardFrom(handle.WithoutLocalGrid(), handle.RoundTripWithoutLocalGrid(), grid.data())) {
    return point.outcome;
  }
  Outcome outcome = ScaleAtGrid(handle, options, grid.data(), out);
  outcome.doubts = point.outcome.doubts;
  return outcome;
}

Outcome Undulation(Handle& handle, const Options& options, const double* in, double* out) {
  Point point{handle, options};
  if (point.Read(in)) {
    point.ReadUndulation(in, out[0]);
  }
  return point.outcome;
}

Outcome Ecef(Handle& handle, const Options& options, const double* in, double* out) {
  Point point{handle, options};
  if (point.Take(in)) {
    point.Call(GeoECEF(handle.Object(), &out[0], &out[1], &out[2], point.latitude, point.longitude,
                       options.height ? in[2] : 0),
               "GeoECEF");
  }
  return point.outcome;
}

Outcome Geographic(Handle& handle, const Options& options, const double* in, double* out) {
  Point point{handle, options};
  point.Call(ECEFGeo(handle.Object(), in[0], in[1], in[2], &point.latitude, &point.longitude, &point.h), "ECEFGeo");
  point.Write(out);
  out[2] = point.h;
  return point.outcome;
}

template <auto measure, bool geodesic>
Outcome Distance(Handle& handle, const Options& options, const double* in, double* out) {
  const double turn = Turn(options);
  double longitude2 = in[3];
  if (std::fabs(longitude2 - in[1]) > turn / 2) {  // the library would take the longer line around the earth
    longitude2 = in[1] + std::remainder(longitude2 - in[1], turn);
  }
  Point to{handle, options};
  Point point{handle, options};
  if (!to.Take(in + 2)) {
    return to.outcome;
  }
  if (!point.Take(in)) {
    return point.outcome;
  }
  double azimuth = 0;
  out[0] = measure(handle.Object(), point.latitude, point.longitude, to.latitude, In(options, longitude2), &azimuth);
  point.Call(GetGeodesyError() == 0 ? 1 : 0, "GCircLL");
  if constexpr (geodesic) {
    double metres = out[0];
    HConvert(handle.Object(), &metres, LATIGO_TO_METRES);
    point.Add(cli::Doubt::LongLine, cli::IsLongLine((point.latitude + to.latitude) / 2, metres));
  } else {
    point.Add(cli::Doubt::FlatRhumbLine, cli::IsFlatRhumbLine(point.latitude, to.latitude, azimuth));
  }
  out[1] = Out(options, azimuth);
  if (!(out[1] >= 0 && out[1] < turn)) {
    out[1] -= turn * std::floor(out[1] / turn);
    out[1] = out[1] < turn ? out[1] : 0;
  }
  return point.outcome;
}

using Calls = Outcome (*)(Handle& handle, const Options& options, const double* in, double* out);

template <Calls calls>
Outcome ConvertPoint(Handle& handle, const Options& options, int outputs, const double* in, double* out) {
  Outcome outcome = calls(handle, options, in, out);
  if (outcome.code == 0 && !std::all_of(out, out + outputs, [](double value) { return std::isfinite(value); })) {
    outcome.code = NotFinite;
  }
  if (outcome.code != 0) {
    std::fill_n(out, outputs, std::numeric_limits<double>::quiet_NaN());
  }
  return outcome;
}

// Counts what is not plain success.
void Count(const Outcome& outcome, std::int64_t number, Summary& summary) {
  if (outcome.code == 0) {
    for (std::size_t i = 0; i < cli::Doubts; ++i) {
      if ((outcome.doubts >> i & 1U) != 0) {
        Summary::Doubtful& doubtful = summary.doubtful[i];
        doubtful.first = doubtful.count++ == 0 ? number : doubtful.first;
      }
    }
  } else if (summary.first < 0) {
    summary.first = number;
    summary.outcome = outcome;
  }
}

// The calls are part of the loop, which costs a fifth of the time of a short projection otherwise.
template <Calls calls>
[[gnu::flatten]] bool ConvertRow(Handle& handle, const Options& options, const Row& row, bool stop, Summary& summary) {
  std::array<double, MaxInputs> in{};
  std::array<double, MaxOutputs> out{};
  std::array<Row::Operand, MaxInputs> from = row.in;
  std::array<Row::Operand, MaxOutputs> to = row.out;
  const auto inputs = static_cast<std::size_t>(row.inputs);
  const auto outputs = static_cast<std::size_t>(row.outputs);
  for (std::int64_t i = row.first; i < row.first + row.count; ++i) {
    for (std::size_t k = 0; k < inputs; ++k) {
      in[k] = *reinterpret_cast<const double*>(from[k].data);
      from[k].data += from[k].stride;
    }
    const Outcome outcome = ConvertPoint<calls>(handle, options, row.outputs, in.data(), out.data());
    for (std::size_t k = 0; k < outputs; ++k) {
      *reinterpret_cast<double*>(to[k].data) = out[k];
      to[k].data += to[k].stride;
    }
    if (row.codes != nullptr) {
      row.codes[i] = outcome.code;
    }
    if (outcome.code != 0 || outcome.doubts != 0) {
      Count(outcome, i, summary);
      if (stop && outcome.code != 0) {
        return false;
      }
    }
  }
  return true;
}

enum class Height { None, Optional, OptionalIn };

struct Entry {
  Conversion point;
  RowConversion row;
  int inputs;
  int outputs;
  Height height;
};

template <Calls calls>
constexpr Entry EntryOf(int inputs, int outputs, Height height = Height::None) {
  return {ConvertPoint<calls>, ConvertRow<calls>, inputs, outputs, height};
}

// In the order of Operation; the numbers are without a height.
constexpr std::array Entries = {
    EntryOf<Forward>(2, 2, Height::Optional),        //
    EntryOf<Inverse>(2, 2, Height::Optional),        //
    EntryOf<Datum<true> >(2, 2, Height::Optional),   //
    EntryOf<Datum<false> >(2, 2, Height::Optional),  //
    EntryOf<Scale>(2, 1),                            //
    EntryOf<ScaleAtGrid>(2, 1),                      //
    EntryOf<Undulation>(2, 1),                       //
    EntryOf<Ecef>(2, 3, Height::OptionalIn),         //
    EntryOf<Geographic>(3, 3),                       //
    EntryOf<Distance<GCircLL, true> >(4, 2),         //
    EntryOf<Distance<RLineLL, false> >(4, 2),        //
};

const Entry& EntryFor(Operation operation) {
  return Entries.at(static_cast<std::size_t>(operation));
}

}  // namespace

int Inputs(Operation operation, const Options& options) {
  const Entry& entry = EntryFor(operation);
  return entry.inputs + (options.height && entry.height != Height::None ? 1 : 0);
}

int Outputs(Operation operation, const Options& options) {
  const Entry& entry = EntryFor(operation);
  return entry.outputs + (options.height && entry.height == Height::Optional ? 1 : 0);
}

Conversion ConversionOf(Operation operation) {
  return EntryFor(operation).point;
}

RowConversion RowConversionOf(Operation operation) {
  return EntryFor(operation).row;
}

const char* TextOf(std::int32_t code, const char* function) {
  switch (code) {
    case NotFinite:
      return "the result is not a finite number";
    case BeyondPole:
      return "the latitude is beyond the pole";
    case BeyondTurn:
      return "the longitude is beyond 360 degrees";
    case OutsideDatumGrid:
      return "the point is outside the datum grid";
    case DatumRowUnreadable:
      return "the datum grid's rows at the point cannot be read";
    case GridFileChanged:
      return "a grid file is not the one that the object had when it was opened";
    case ObjectClosed:
      return "the object is closed";
    default:
      return LatigoErrorText(code, function);
  }
}

}  // namespace latigo::python
