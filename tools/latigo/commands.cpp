#include "commands.h"

#include <cmath>

#include "coordinate_system.h"
#include "lines.h"
#include "point_line.h"

namespace latigo::cli {

namespace {

constexpr double RadiansPerDegree = 0.017453292519943295;

constexpr int LengthPrecision = 4;   // 0.1 mm
constexpr int DegreePrecision = 10;  // 0.01 mm on the earth
constexpr int SecondPrecision = 6;   // 0.03 mm
constexpr int ScalePrecision = 10;

// How a value is written.
enum class Quantity { Length, Latitude, Longitude, Azimuth, Factor };

struct Value {
  double value;
  Quantity quantity;
};

// What a command makes of a point; up to three values.
struct Result {
  Value values[3];
  int count = 0;
  std::int32_t code = 0;           // of the library call that failed
  const char* function = nullptr;  // that call; null if all succeeded

  void Add(double value, Quantity quantity) { values[count++] = {value, quantity}; }
  // Takes the outcome of a library call; true if it succeeded.
  bool Call(std::int32_t success, const char* name) {
    if (success == 0) {
      code = GetGeodesyError();
      function = name;
    }
    return success != 0;
  }
};

Object OpenOrThrow(const Options& options) {
  RequireSection(options.file, options.section);
  WarnOfUnknownKeys(options.file, options.section);
  Opened opened = OpenSection(options.file, options.section);
  if (opened.code != 0) {
    throw UsageError(options.file + " [" + options.section + "]: " + opened.explanation);
  }
  return std::move(opened.object);
}

class Converter {
 public:
  explicit Converter(const Options& options) : options_(options), object_(OpenOrThrow(options)) {
    GeodesyParams params;
    GetGeodesyParams(Handle(), &params, nullptr, nullptr);
    centralMeridian_ = params.CentralMeridian;
    char path[2] = "";
    GetGeoid(Handle(), path, 1, &constant_);
    hasGeoid_ = path[0] != '\0' || constant_ != 0;
  }

  GeodesyHandle Handle() const { return object_.get(); }
  bool HasGeoid() const { return hasGeoid_; }

  Order GeographicOrder() const { return options_.lonlat ? Order::LongitudeLatitude : Order::LatitudeLongitude; }

  // The geographic position of a line on the object's datum, radians.
  bool ReadGeographic(const PointLine& point, double& latitude, double& longitude, double& h, Result& result) const {
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

  void WriteGeographic(double latitude, double longitude, Result& result) const {
    result.Add(latitude / RadiansPerDegree, Quantity::Latitude);
    result.Add(std::remainder(longitude / RadiansPerDegree, 360), Quantity::Longitude);
    if (options_.lonlat) {
      std::swap(result.values[0], result.values[1]);
    }
  }

 private:
  static constexpr double Pi = 3.141592653589793;
  static constexpr double TwoPi = 6.283185307179586;

  const Options& options_;
  Object object_;
  double centralMeridian_ = 0;
  double constant_ = 0;
  bool hasGeoid_ = false;
};

// What the third number of a line is to a command: carried through with the rest, a height that gives one value more,
// part of the point, or part of the point that must be there.
enum class Third { Carried, Height, Used, Needed };

// Runs over all lines of all files. The operation makes a Result of a PointLine: so many values, and a height if the
// line has one and the command takes it.
class PointLoop {
 public:
  using Parser = PointLine (*)(std::string_view line, Order order);

  PointLoop(const Options& options, Order order, int values, Third third, Parser parse = ParsePointLine)
      : options_(options), order_(order), values_(values), third_(third), parse_(parse) {}

  // A word behind the first value, its unit.
  void SetUnit(std::string unit) { unit_ = std::move(unit); }

  template <typename Operation>
  int Run(Operation operation) {
    const std::vector<std::string> standardInput = {"-"};
    for (const std::string& path : options_.points.empty() ? standardInput : options_.points) {
      LineReader reader(path);
      for (std::string_view line; reader.Next(line);) {
        DoLine(reader, line, operation);
      }
    }
    writer_.Flush();
    return failed_ ? 1 : 0;
  }

 private:
  template <typename Operation>
  void DoLine(const LineReader& reader, std::string_view line, Operation operation) {
    if (!reader.TooLong() && IsComment(line)) {
      writer_.Text(line);
      writer_.Char('\n');
      return;
    }
    PointLine point;
    if (reader.TooLong()) {
      point.fault = "the line is too long";
    } else {
      point = parse_(line, order_);
      if (point.fault == nullptr && third_ == Third::Needed && !point.third) {
        point.fault = "a field too few";
      }
    }
    if (point.fault != nullptr) {
      Fail(reader, point, point.fault);
      return;
    }
    Result result;
    operation(point, result);
    if (result.function != nullptr) {
      Fail(reader, point, ErrorText(result.code, result.function));
      return;
    }
    for (int i = 0; i < result.count; ++i) {
      if (!std::isfinite(result.values[i].value)) {
        Fail(reader, point, "the result is not a finite number");
        return;
      }
    }
    for (int i = 0; i < result.count; ++i) {
      Separate(point, i);
      Write(result.values[i]);
      if (i == 0 && !unit_.empty()) {
        writer_.Char(point.separator);
        writer_.Text(unit_);
      }
    }
    End(point);
  }

  void Write(const Value& value) {
    const auto precision = [this](int own) { return options_.precision >= 0 ? options_.precision : own; };
    const bool isAngle = value.quantity != Quantity::Length && value.quantity != Quantity::Factor;
    if (isAngle && options_.dms) {
      writer_.Dms(value.value, AxisOf(value.quantity), precision(SecondPrecision));
    } else {
      writer_.Number(value.value, precision(isAngle                              ? DegreePrecision
                                            : value.quantity == Quantity::Factor ? ScalePrecision
                                                                                 : LengthPrecision));
    }
  }

  static Axis AxisOf(Quantity quantity) {
    return quantity == Quantity::Latitude    ? Axis::Latitude
           : quantity == Quantity::Longitude ? Axis::Longitude
                                             : Axis::Azimuth;
  }

  void Fail(const LineReader& reader, const PointLine& point, const std::string& reason) {
    failed_ = true;
    std::fprintf(stderr, "latigo: %s:%zu: %s\n", reader.Name().c_str(), reader.Number(), reason.c_str());
    const int values = values_ + (third_ == Third::Height && point.third ? 1 : 0);
    for (int i = 0; i < values; ++i) {
      Separate(point, i);
      writer_.Char('*');
    }
    End(point);
  }

  void Separate(const PointLine& point, int index) {
    if (index > 0) {
      writer_.Char(point.separator);
    }
  }

  void End(const PointLine& point) {
    writer_.Text(third_ == Third::Carried ? point.restWithThird : point.rest);
    writer_.Char('\n');
  }

  const Options& options_;
  Order order_;
  int values_;
  Third third_;
  Parser parse_;
  std::string unit_;
  Writer writer_;
  bool failed_ = false;
};

}  // namespace

int RunForward(const Options& options) {
  const Converter converter(options);
  return PointLoop(options, converter.GeographicOrder(), 2, Third::Height)
      .Run([&](const PointLine& point, Result& result) {
        double latitude = 0;
        double longitude = 0;
        double h = 0;
        double x = 0;
        double y = 0;
        double undulation = 0;
        if (!converter.ReadGeographic(point, latitude, longitude, h, result) ||
            !result.Call(GeoXY(converter.Handle(), &x, &y, latitude, longitude), "GeoXY") ||
            (point.third && converter.HasGeoid() &&
             !result.Call(Undulation(converter.Handle(), latitude, longitude, &undulation), "Undulation"))) {
          return;
        }
        result.Add(x, Quantity::Length);
        result.Add(y, Quantity::Length);
        if (point.third) {
          result.Add(h - undulation, Quantity::Length);
        }
      });
}

int RunInverse(const Options& options) {
  const Converter converter(options);
  return PointLoop(options, Order::Grid, 2, Third::Height).Run([&](const PointLine& point, Result& result) {
    double latitude = 0;
    double longitude = 0;
    double h = point.third.value_or(0);
    double undulation = 0;
    if (!result.Call(XYGeo(converter.Handle(), point.first, point.second, &latitude, &longitude), "XYGeo") ||
        (point.third && converter.HasGeoid() &&
         !result.Call(Undulation(converter.Handle(), latitude, longitude, &undulation), "Undulation"))) {
      return;
    }
    h += undulation;
    if (options.wgs84 && !result.Call(InvWGS84Conv(converter.Handle(), &latitude, &longitude, &h), "InvWGS84Conv")) {
      return;
    }
    converter.WriteGeographic(latitude, longitude, result);
    if (point.third) {
      result.Add(h, Quantity::Length);
    }
  });
}

int RunScale(const Options& options) {
  const Converter converter(options);
  // The factor belongs to the projection's own coordinates, before any local grid.
  const Adjustment none = {0, 0, 0, 0, 1, 0, 0};
  SetAdjustment(converter.Handle(), &none);
  const Order order = options.grid ? Order::Grid : converter.GeographicOrder();
  return PointLoop(options, order, 1, Third::Carried).Run([&](const PointLine& point, Result& result) {
    double x = point.first;
    double y = point.second;
    if (!options.grid) {
      double latitude = 0;
      double longitude = 0;
      double h = 0;
      if (!converter.ReadGeographic(point, latitude, longitude, h, result) ||
          !result.Call(GeoXY(converter.Handle(), &x, &y, latitude, longitude), "GeoXY")) {
        return;
      }
    }
    const double k = Scale(converter.Handle(), x, y);
    if (result.Call(GetGeodesyError() == 0 ? 1 : 0, "Scale")) {
      result.Add(k, Quantity::Factor);
    }
  });
}

int RunUndulation(const Options& options) {
  const Converter converter(options);
  return PointLoop(options, converter.GeographicOrder(), 1, Third::Carried)
      .Run([&](const PointLine& point, Result& result) {
        double latitude = 0;
        double longitude = 0;
        double h = 0;
        double undulation = 0;
        if (converter.ReadGeographic(point, latitude, longitude, h, result) &&
            result.Call(Undulation(converter.Handle(), latitude, longitude, &undulation), "Undulation")) {
          result.Add(undulation, Quantity::Length);
        }
      });
}

int RunEcef(const Options& options) {
  const Converter converter(options);
  const Order order = options.inverse ? Order::Grid : converter.GeographicOrder();
  const Third third = options.inverse ? Third::Needed : Third::Used;
  return PointLoop(options, order, 3, third).Run([&](const PointLine& point, Result& result) {
    double latitude = 0;
    double longitude = 0;
    double h = 0;
    if (options.inverse) {
      result.Call(
          ECEFGeo(converter.Handle(), point.first, point.second, point.third.value_or(0), &latitude, &longitude, &h),
          "ECEFGeo");
      converter.WriteGeographic(latitude, longitude, result);
      result.Add(h, Quantity::Length);
      return;
    }
    double x = 0;
    double y = 0;
    double z = 0;
    if (converter.ReadGeographic(point, latitude, longitude, h, result)) {
      result.Call(GeoECEF(converter.Handle(), &x, &y, &z, latitude, longitude, h), "GeoECEF");
      for (const double length : {x, y, z}) {
        result.Add(length, Quantity::Length);
      }
    }
  });
}

int RunDistance(const Options& options) {
  const Converter converter(options);
  char unit[16];
  const bool named = GetLocalName(converter.Handle(), 3, "", unit, sizeof unit) != 0;
  PointLoop loop(options, converter.GeographicOrder(), 2, Third::Used, ParseTwoPoints);
  loop.SetUnit(named ? unit : "units");
  return loop.Run([&](const PointLine& line, Result& result) {
    const double latitude1 = line.first * RadiansPerDegree;
    const double longitude1 = line.second * RadiansPerDegree;
    const double latitude2 = line.toFirst * RadiansPerDegree;
    // The near way round.
    const double longitude2 = (line.second + std::remainder(line.toSecond - line.second, 360)) * RadiansPerDegree;
    const auto measure = options.rhumb ? RLineLL : GCircLL;
    double azimuth = 0;
    result.Add(measure(converter.Handle(), latitude1, longitude1, latitude2, longitude2, &azimuth), Quantity::Length);
    result.Add(std::fmod(azimuth / RadiansPerDegree + 360, 360), Quantity::Azimuth);
  });
}

}  // namespace latigo::cli
