/** @file
 * LATIGO for C++20: a thin frame over latigo.h, header only. Functions have the names of the exports that they call.
 *
 * Nothing throws but what makes a `std::string`. A `Result` carries a value and the code of the call; the value is to
 * be used only if the code is 0, except where a comment says otherwise. docs/errors.md has the codes, latigo.h the
 * units.
 */
#ifndef LATIGO_LATIGO_HPP
#define LATIGO_LATIGO_HPP

#include <latigo/latigo.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <type_traits>
#include <utility>

/** The library's interface for C++. */
namespace latigo::api {

/** Latitude and longitude, radians. */
struct Position {
  double latitude;  /**< north positive */
  double longitude; /**< east positive */
};

/** A position with its ellipsoidal height, metres. */
struct Place {
  double latitude;  /**< radians, north positive */
  double longitude; /**< radians, east positive */
  double height;    /**< metres */
};

/** Grid coordinates, grid units. */
struct Grid {
  double x; /**< easting, or x of the local grid */
  double y; /**< northing, or y of the local grid */
};

/** Earth-centred coordinates, metres. */
struct Cartesian {
  double x; /**< towards the meridian of Greenwich */
  double y; /**< towards 90 degrees east */
  double z; /**< towards the north pole */
};

/** A line between two positions. */
struct Line {
  double distance; /**< grid units */
  double azimuth;  /**< at the first position, radians, clockwise from north, not normalised */
};

/** An ellipsoid: the semi-major axis in metres and the flattening itself, not its reciprocal. */
struct Ellipsoid {
  double a; /**< semi-major axis, metres */
  double f; /**< flattening */
};

/** A grid file and the constant that is added to its undulations. */
struct Geoid {
  std::string fileName; /**< empty for none */
  double orthoHCorr;    /**< in the unit of the grid's values */
};

/** A value and the code of the call that gave it. */
template <typename Value>
struct [[nodiscard]] Result {
  Value value;       /**< not defined if the code is not 0, unless the call says otherwise */
  std::int32_t code; /**< 0 for success */

  /** Whether the call succeeded. */
  explicit operator bool() const noexcept { return code == 0; }
  /** The value. */
  const Value& operator*() const& noexcept { return value; }
  /** The value, to be moved from. */
  Value&& operator*() && noexcept { return std::move(value); }
  /** The value's members. */
  const Value* operator->() const noexcept { return &value; }
};

/** What became of many points. */
struct [[nodiscard]] Batch {
  std::size_t failures; /**< points that failed */
  std::size_t first;    /**< index of the first of them */
  std::int32_t code;    /**< its code, 0 if none failed */

  /** Whether every point succeeded. */
  explicit operator bool() const noexcept { return code == 0; }
};

/** The version as 100 * major + minor. */
inline std::int32_t GetGeodesyVersion() noexcept {
  return ::GetGeodesyVersion();
}

/** One coordinate system. Owns its handle: it can be moved and not copied. An object that was moved from, or could not
 * be made, has no handle, and every call on it gives code 2. One object serves one thread at a time. */
class Geodesy {
 public:
  /** An object without a handle. */
  Geodesy() noexcept = default;
  /** Takes over a handle that latigo.h gave. */
  explicit Geodesy(GeodesyHandle handle) noexcept : handle_(handle) {}

  /** Makes an object from a record. */
  static Result<Geodesy> CreateGeodesy(const GeodesyParams& params) noexcept { return Made(::CreateGeodesy(&params)); }

  /** Makes an object from a section of a configuration file. With code 9 the object is usable: its geoid is missing. */
  static Result<Geodesy> CreateFileGeodesy(const char* fileName, const char* section = nullptr) noexcept {
    return Made(::CreateFileGeodesy(fileName, section));
  }

  /** Whether there is a handle. */
  explicit operator bool() const noexcept { return handle_ != nullptr; }
  /** The handle, for calls of latigo.h; it stays this object's. */
  GeodesyHandle Handle() const noexcept { return handle_.get(); }
  /** Gives the handle up to the caller. */
  GeodesyHandle Release() noexcept { return handle_.release(); }

  /** The record, as the object uses it. */
  Result<GeodesyParams> GetGeodesyParams() const noexcept {
    return Call<GeodesyParams>(
        [&](GeodesyParams& params) { return ::GetGeodesyParams(Handle(), &params, nullptr, nullptr); });
  }
  /** The ellipsoid's name, empty for one without a name. */
  Result<std::string> EllipsoidName() const {
    GeodesyParams params;
    return Text<LATIGO_ELLIPSOID_NAME_SIZE>(
        [&](char* buffer) { return ::GetGeodesyParams(Handle(), &params, buffer, nullptr); });
  }
  /** The projection's code of three letters. */
  Result<std::string> ProjectionCode() const {
    GeodesyParams params;
    return Text<LATIGO_PROJECTION_CODE_SIZE>(
        [&](char* buffer) { return ::GetGeodesyParams(Handle(), &params, nullptr, buffer); });
  }

  /** Geographic to grid. */
  Result<Grid> GeoXY(Position from) const noexcept {
    return Call<Grid>([&](Grid& to) { return ::GeoXY(Handle(), &to.x, &to.y, from.latitude, from.longitude); });
  }
  /** Grid to geographic. */
  Result<Position> XYGeo(Grid from) const noexcept {
    return Call<Position>([&](Position& to) { return ::XYGeo(Handle(), from.x, from.y, &to.latitude, &to.longitude); });
  }
  /** Geographic to grid, point by point: as many as the shorter of `from` and `to` holds. A point that fails is two
   * NaNs, and the others are converted all the same. `codes` takes the codes of as many points as it holds. */
  Batch GeoXY(std::span<const Position> from, std::span<Grid> to, std::span<std::int32_t> codes = {}) const noexcept {
    return Each(from, to, codes, [&](Position each) { return GeoXY(each); });
  }
  /** Grid to geographic, point by point, as above. */
  Batch XYGeo(std::span<const Grid> from, std::span<Position> to, std::span<std::int32_t> codes = {}) const noexcept {
    return Each(from, to, codes, [&](Grid each) { return XYGeo(each); });
  }
  /** The point scale factor at the projection's own grid coordinates. */
  Result<double> Scale(Grid at) const noexcept {
    const double k = ::Scale(Handle(), at.x, at.y);
    return {k, ::GetGeodesyError()};
  }

  /** Puts the seven values in force. Gives the code. */
  std::int32_t SetEllDiff(const EllDiff& diff) noexcept { return Code(::SetEllDiff(Handle(), &diff)); }
  /** The seven values. */
  Result<EllDiff> GetEllDiff() const noexcept {
    return Call<EllDiff>([&](EllDiff& diff) { return ::GetEllDiff(Handle(), &diff); });
  }
  /** Puts a datum grid in force, or removes it if null. Gives the code. */
  std::int32_t SetEllModel(const char* fileName) noexcept { return Code(::SetEllModel(Handle(), fileName)); }
  /** The path of the datum grid, empty for none. */
  Result<std::string> GetEllModel() const {
    return Path([&](char* buffer, std::int32_t size) { return ::GetEllModel(Handle(), buffer, size); });
  }
  /** From another ellipsoid to the object's datum by the seven values. */
  Result<Place> EllConv(Place from, Ellipsoid other) const noexcept {
    return Moved(from, [&](double* phi, double* lambda, double* h) {
      return ::EllConv(Handle(), phi, lambda, h, other.a, other.f);
    });
  }
  /** From the object's datum to another ellipsoid by the seven values. */
  Result<Place> InvEllConv(Place from, Ellipsoid other) const noexcept {
    return Moved(from, [&](double* phi, double* lambda, double* h) {
      return ::InvEllConv(Handle(), phi, lambda, h, other.a, other.f);
    });
  }
  /** From WGS-84 to the object's datum. */
  Result<Place> WGS84Conv(Place from) const noexcept {
    return Moved(from, [&](double* phi, double* lambda, double* h) { return ::WGS84Conv(Handle(), phi, lambda, h); });
  }
  /** From the object's datum to WGS-84. */
  Result<Place> InvWGS84Conv(Place from) const noexcept {
    return Moved(from,
                 [&](double* phi, double* lambda, double* h) { return ::InvWGS84Conv(Handle(), phi, lambda, h); });
  }
  /** From WGS-84 to the object's datum, place by place, as `GeoXY`. */
  Batch WGS84Conv(std::span<const Place> from, std::span<Place> to, std::span<std::int32_t> codes = {}) const noexcept {
    return Each(from, to, codes, [&](Place each) { return WGS84Conv(each); });
  }
  /** From the object's datum to WGS-84, place by place, as `GeoXY`. */
  Batch InvWGS84Conv(std::span<const Place> from, std::span<Place> to,
                     std::span<std::int32_t> codes = {}) const noexcept {
    return Each(from, to, codes, [&](Place each) { return InvWGS84Conv(each); });
  }
  /** Geographic to earth-centred, on the object's ellipsoid. */
  Result<Cartesian> GeoECEF(Place from) const noexcept {
    return Call<Cartesian>([&](Cartesian& to) {
      return ::GeoECEF(Handle(), &to.x, &to.y, &to.z, from.latitude, from.longitude, from.height);
    });
  }
  /** Earth-centred to geographic, on the object's ellipsoid. */
  Result<Place> ECEFGeo(Cartesian from) const noexcept {
    return Call<Place>([&](Place& to) {
      return ::ECEFGeo(Handle(), from.x, from.y, from.z, &to.latitude, &to.longitude, &to.height);
    });
  }

  /** Along the great circle. */
  Result<Line> GCircLL(Position from, Position to) const noexcept { return Measured(::GCircLL, from, to); }
  /** Along the rhumb line. */
  Result<Line> RLineLL(Position from, Position to) const noexcept { return Measured(::RLineLL, from, to); }

  /** Puts a geoid grid in force, or none if null, and the constant. Gives the code. */
  std::int32_t SetGeoid(const char* fileName, double orthoHCorr = 0) noexcept {
    return Code(::SetGeoid(Handle(), fileName, orthoHCorr));
  }
  /** The geoid grid and the constant. */
  Result<Geoid> GetGeoid() const {
    double constant = 0;
    Result<std::string> path =
        Path([&](char* buffer, std::int32_t size) { return ::GetGeoid(Handle(), buffer, size, &constant); });
    return {{std::move(path.value), constant}, path.code};
  }
  /** The geoid undulation. With codes 8 and 13 the value is the constant alone. */
  Result<double> Undulation(Position at) const noexcept {
    return Call<double>([&](double& n) { return ::Undulation(Handle(), at.latitude, at.longitude, &n); });
  }
  /** A horizontal length in metres, from grid units. */
  Result<double> Metres(double gridUnits) const noexcept { return Converted(::HConvert, gridUnits, 1); }
  /** A horizontal length in grid units, from metres. */
  Result<double> GridUnits(double metres) const noexcept { return Converted(::HConvert, metres, 0); }
  /** A vertical length in metres, from vertical units. */
  Result<double> VerticalMetres(double verticalUnits) const noexcept { return Converted(::VConvert, verticalUnits, 1); }
  /** A vertical length in vertical units, from metres. */
  Result<double> VerticalUnits(double metres) const noexcept { return Converted(::VConvert, metres, 0); }

  /** Replaces the adjustment record. Gives the code. */
  std::int32_t SetAdjustment(const Adjustment& adjustment) noexcept {
    return Code(::SetAdjustment(Handle(), &adjustment));
  }
  /** The adjustment record. */
  Result<Adjustment> GetAdjustment() const noexcept {
    return Call<Adjustment>([&](Adjustment& adjustment) { return ::GetAdjustment(Handle(), &adjustment); });
  }
  /** The name of a unit or axis, in Windows-1252. */
  Result<std::string> GetLocalName(std::int32_t request, const char* language) const {
    return Text<NameSize>([&](char* buffer) { return ::GetLocalName(Handle(), request, language, buffer, NameSize); });
  }

 private:
  static constexpr std::int32_t NameSize = 64;  // the names of the library are shorter

  struct Destroy {
    void operator()(GeodesyHandle handle) const noexcept { ::DestroyGeodesy(handle); }
  };

  static std::int32_t Code(std::int32_t done) noexcept { return done != 0 ? 0 : ::GetGeodesyError(); }

  static Result<Geodesy> Made(GeodesyHandle handle) noexcept {
    const std::int32_t code = ::GetGeodesyError();
    return {Geodesy(handle), code};
  }

  template <typename Value, typename Operation>
  static Result<Value> Call(Operation operation) noexcept {
    Value value{};
    const std::int32_t done = operation(value);
    return {value, Code(done)};
  }

  template <std::size_t Size, typename Operation>
  static Result<std::string> Text(Operation operation) {
    std::array<char, Size + 1> buffer{};
    const std::int32_t code = Code(operation(buffer.data()));
    return {buffer.data(), code};
  }

  // A path that reaches the last byte that it may take could be cut: then the buffer grows. The library writes no
  // terminator behind such a text, so one byte is kept from it.
  template <typename Operation>
  static Result<std::string> Path(Operation operation) {
    for (std::string text(512, '\0');; text.assign(text.size() * 2, '\0')) {
      const std::int32_t code = Code(operation(text.data(), static_cast<std::int32_t>(text.size() - 1)));
      const std::size_t length = std::min(text.find('\0'), text.size());
      if (length < text.size() - 2) {
        text.resize(length);
        return {std::move(text), code};
      }
    }
  }

  template <typename Operation>
  static Result<Place> Moved(Place place, Operation operation) noexcept {
    const std::int32_t done = operation(&place.latitude, &place.longitude, &place.height);
    return {place, Code(done)};
  }

  template <typename Measure>
  Result<Line> Measured(Measure measure, Position from, Position to) const noexcept {
    Line line{};
    line.distance = measure(Handle(), from.latitude, from.longitude, to.latitude, to.longitude, &line.azimuth);
    return {line, ::GetGeodesyError()};
  }

  template <typename Convert>
  Result<double> Converted(Convert convert, double value, std::uint8_t direction) const noexcept {
    const std::int32_t done = convert(Handle(), &value, direction);
    return {value, Code(done)};
  }

  static constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
  static void Spoil(Grid& grid) noexcept { grid = {NaN, NaN}; }
  static void Spoil(Position& position) noexcept { position = {NaN, NaN}; }
  static void Spoil(Place& place) noexcept { place = {NaN, NaN, NaN}; }

  template <typename From, typename To, typename Operation>
  static Batch Each(std::span<const From> from, std::span<To> to, std::span<std::int32_t> codes,
                    Operation operation) noexcept {
    Batch batch{};
    const std::size_t count = std::min(from.size(), to.size());
    for (std::size_t i = 0; i < count; ++i) {
      const auto [value, code] = operation(from[i]);
      to[i] = value;
      if (code != 0) {
        Spoil(to[i]);
        if (batch.failures++ == 0) {
          batch.first = i;
          batch.code = code;
        }
      }
      if (i < codes.size()) {
        codes[i] = code;
      }
    }
    return batch;
  }

  std::unique_ptr<std::remove_pointer_t<GeodesyHandle>, Destroy> handle_;
};

}  // namespace latigo::api

#endif
