/** @file
 * LATIGO for C++17 and later: a thin class over latigo.h, header only. Functions have the names of the exports that
 * they call; latigo.h has their ranges and units.
 *
 * A `Result` carries a value and the code of the call, a `Status` the code alone; both are true for success, and `Text`
 * says what the code means. The value is to be used only on success, except where a comment says otherwise. Nothing
 * throws, except that a `std::string` may run out of memory. What may move the position of a grid file is not const.
 */
#ifndef LATIGO_LATIGO_HPP
#define LATIGO_LATIGO_HPP

#if !(defined(__cplusplus) && __cplusplus >= 201703L) && !(defined(_MSVC_LANG) && _MSVC_LANG >= 201703L)
#error "latigo/latigo.hpp needs C++17 or later; latigo/latigo.h serves older standards"
#else

#include <latigo/latigo.h>
#include <latigo/latigo_errors.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

/** The library's interface for C++. */
namespace latigo::api {

/** Radians of an angle in degrees. */
constexpr double FromDegrees(double degrees) noexcept {
  return degrees * 0.017453292519943295;
}
/** Degrees of an angle in radians. */
constexpr double ToDegrees(double radians) noexcept {
  return radians / 0.017453292519943295;
}

/** Latitude and longitude, radians. */
struct Position {
  double latitude;  /**< north positive */
  double longitude; /**< east positive */

  /** From degrees. */
  static constexpr Position FromDegrees(double latitude, double longitude) noexcept {
    return {api::FromDegrees(latitude), api::FromDegrees(longitude)};
  }
};

/** A position with its ellipsoidal height, metres. */
struct Place {
  double latitude;  /**< radians, north positive */
  double longitude; /**< radians, east positive */
  double height;    /**< metres */

  /** From degrees, and metres. */
  static constexpr Place FromDegrees(double latitude, double longitude, double height) noexcept {
    return {api::FromDegrees(latitude), api::FromDegrees(longitude), height};
  }
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

/** The outcome of a call that only sets something. */
struct [[nodiscard]] Status {
  std::int32_t code;    /**< one of `LatigoError`, 0 for success */
  const char* function; /**< the exported function that was called */

  /** Whether the call succeeded. */
  explicit operator bool() const noexcept { return code == 0; }
  /** What the code means. */
  const char* Text() const noexcept { return LatigoErrorText(code, function); }
};

/** A value and the outcome of the call that returned it. */
template <typename Value>
struct [[nodiscard]] Result {
  Value value;          /**< undefined if the code is not 0, unless the call says otherwise */
  std::int32_t code;    /**< one of `LatigoError`, 0 for success */
  const char* function; /**< the exported function that was called */

  /** Whether the call succeeded. */
  explicit operator bool() const noexcept { return code == 0; }
  /** What the code means. */
  const char* Text() const noexcept { return LatigoErrorText(code, function); }
  /** The value. */
  const Value& operator*() const& noexcept { return value; }
  /** The value, to be moved from. */
  Value&& operator*() && noexcept { return std::move(value); }
  /** The value's members. */
  const Value* operator->() const noexcept { return &value; }
};

/** The outcome of converting many points. */
struct [[nodiscard]] Batch {
  std::size_t failures; /**< number of points that failed */
  std::size_t first;    /**< index of the first of them */
  std::int32_t code;    /**< its code, 0 if none failed */
  const char* function; /**< the exported function that was called */

  /** Whether every point succeeded. */
  explicit operator bool() const noexcept { return code == 0; }
  /** What the code means. */
  const char* Text() const noexcept { return LatigoErrorText(code, function); }
};

/** Consecutive elements of an array, a std::array, a std::vector or a std::span; owned by the caller. */
template <typename Element>
class Span {
 public:
  /** No elements. */
  constexpr Span() noexcept = default;
  /** The elements of anything that std::data and std::size accept. */
  template <typename Range,
            typename = std::enable_if_t<std::is_convertible_v<
                std::remove_pointer_t<decltype(std::data(std::declval<Range&>()))> (*)[], Element (*)[]> > >
  constexpr Span(Range&& range) noexcept : data_(std::data(range)), size_(std::size(range)) {}

  /** The number of elements. */
  constexpr std::size_t size() const noexcept { return size_; }
  /** The first element, or null. */
  constexpr Element* data() const noexcept { return data_; }
  /** An element. */
  constexpr Element& operator[](std::size_t index) const noexcept { return data_[index]; }

 private:
  Element* data_ = nullptr;
  std::size_t size_ = 0;
};

/** The version as 100 * major + minor. */
using ::GetGeodesyVersion;

/** One coordinate system. Owns its handle: it can be moved, not copied. An object that was moved from, or could not be
 * created, has no handle, and every call on it returns code 2. Only one thread at a time may use an object with a grid
 * file; threads may share another as long as they only convert. */
class Geodesy {
 public:
  /** An object without a handle. */
  Geodesy() noexcept = default;
  /** Takes over a handle from a call of latigo.h. */
  explicit Geodesy(GeodesyHandle handle) noexcept : handle_(handle) {}

  /** Makes an object from a record. */
  static Result<Geodesy> CreateGeodesy(const GeodesyParams& params) noexcept {
    return Made("CreateGeodesy", ::CreateGeodesy(&params));
  }

  /** Makes an object from a section of a configuration file. With code 9 the object is usable: its geoid is missing. */
  static Result<Geodesy> CreateFileGeodesy(const char* fileName, const char* section = nullptr) noexcept {
    return Made("CreateFileGeodesy", ::CreateFileGeodesy(fileName, section));
  }

  /** Whether there is a handle. */
  explicit operator bool() const noexcept { return handle_ != nullptr; }
  /** The handle, for calls of latigo.h; it stays this object's. */
  GeodesyHandle Handle() const noexcept { return handle_.get(); }
  /** Hands the handle over to the caller. */
  GeodesyHandle Release() noexcept { return handle_.release(); }

  /** The record, as the object uses it. */
  Result<GeodesyParams> GetGeodesyParams() const noexcept {
    return Call<GeodesyParams>("GetGeodesyParams", [&](GeodesyParams& params) {
      return ::GetGeodesyParams(Handle(), &params, nullptr, nullptr);
    });
  }
  /** The ellipsoid's name, empty for one without a name. */
  Result<std::string> EllipsoidName() const {
    GeodesyParams params;
    return Text<LATIGO_ELLIPSOID_NAME_SIZE>(
        "GetGeodesyParams", [&](char* buffer) { return ::GetGeodesyParams(Handle(), &params, buffer, nullptr); });
  }
  /** The projection's code of three letters. */
  Result<std::string> ProjectionCode() const {
    GeodesyParams params;
    return Text<LATIGO_PROJECTION_CODE_SIZE>(
        "GetGeodesyParams", [&](char* buffer) { return ::GetGeodesyParams(Handle(), &params, nullptr, buffer); });
  }

  /** Geographic to grid. */
  Result<Grid> GeoXY(Position from) const noexcept {
    return Call<Grid>("GeoXY",
                      [&](Grid& to) { return ::GeoXY(Handle(), &to.x, &to.y, from.latitude, from.longitude); });
  }
  /** Grid to geographic. */
  Result<Position> XYGeo(Grid from) const noexcept {
    return Call<Position>("XYGeo",
                          [&](Position& to) { return ::XYGeo(Handle(), from.x, from.y, &to.latitude, &to.longitude); });
  }
  /** Geographic to grid, point by point: as many as the shorter of `from` and `to` holds. A point that fails is two
   * NaNs, and the others are converted all the same. `codes` takes the codes of as many points as it holds. */
  Batch GeoXY(Span<const Position> from, Span<Grid> to, Span<std::int32_t> codes = {}) const noexcept {
    return Each("GeoXY", from, to, codes, [&](Position each) { return GeoXY(each); });
  }
  /** Grid to geographic, point by point, as above. */
  Batch XYGeo(Span<const Grid> from, Span<Position> to, Span<std::int32_t> codes = {}) const noexcept {
    return Each("XYGeo", from, to, codes, [&](Grid each) { return XYGeo(each); });
  }
  /** The point scale factor at the projection's own grid coordinates. */
  Result<double> Scale(Grid at) const noexcept {
    const double k = ::Scale(Handle(), at.x, at.y);
    return {k, ::GetGeodesyError(), "Scale"};
  }

  /** Sets the seven-parameter (Helmert) transformation and closes any datum grid. */
  Status SetEllDiff(const EllDiff& diff) noexcept { return Set("SetEllDiff", ::SetEllDiff(Handle(), &diff)); }
  /** The seven parameters. */
  Result<EllDiff> GetEllDiff() const noexcept {
    return Call<EllDiff>("GetEllDiff", [&](EllDiff& diff) { return ::GetEllDiff(Handle(), &diff); });
  }
  /** Sets a datum grid, or removes it if null; either clears the seven parameters. */
  Status SetEllModel(const char* fileName) noexcept { return Set("SetEllModel", ::SetEllModel(Handle(), fileName)); }
  /** The path of the datum grid, empty for none. */
  Result<std::string> GetEllModel() const {
    return Path("GetEllModel", [&](char* buffer, std::int32_t size) { return ::GetEllModel(Handle(), buffer, size); });
  }
  /** From another ellipsoid to the object's datum by the seven parameters. */
  Result<Place> EllConv(Place from, Ellipsoid other) const noexcept {
    return Moved("EllConv", from, [&](double* phi, double* lambda, double* h) {
      return ::EllConv(Handle(), phi, lambda, h, other.a, other.f);
    });
  }
  /** From the object's datum to another ellipsoid by the seven parameters. */
  Result<Place> InvEllConv(Place from, Ellipsoid other) const noexcept {
    return Moved("InvEllConv", from, [&](double* phi, double* lambda, double* h) {
      return ::InvEllConv(Handle(), phi, lambda, h, other.a, other.f);
    });
  }
  /** From WGS-84 to the object's datum. */
  Result<Place> WGS84Conv(Place from) noexcept {
    return Moved("WGS84Conv", from,
                 [&](double* phi, double* lambda, double* h) { return ::WGS84Conv(Handle(), phi, lambda, h); });
  }
  /** From the object's datum to WGS-84. */
  Result<Place> InvWGS84Conv(Place from) noexcept {
    return Moved("InvWGS84Conv", from,
                 [&](double* phi, double* lambda, double* h) { return ::InvWGS84Conv(Handle(), phi, lambda, h); });
  }
  /** From WGS-84 to the object's datum, place by place, as `GeoXY`. */
  Batch WGS84Conv(Span<const Place> from, Span<Place> to, Span<std::int32_t> codes = {}) noexcept {
    return Each("WGS84Conv", from, to, codes, [&](Place each) { return WGS84Conv(each); });
  }
  /** From the object's datum to WGS-84, place by place, as `GeoXY`. */
  Batch InvWGS84Conv(Span<const Place> from, Span<Place> to, Span<std::int32_t> codes = {}) noexcept {
    return Each("InvWGS84Conv", from, to, codes, [&](Place each) { return InvWGS84Conv(each); });
  }
  /** Geographic to earth-centred, on the object's ellipsoid. */
  Result<Cartesian> GeoECEF(Place from) const noexcept {
    return Call<Cartesian>("GeoECEF", [&](Cartesian& to) {
      return ::GeoECEF(Handle(), &to.x, &to.y, &to.z, from.latitude, from.longitude, from.height);
    });
  }
  /** Earth-centred to geographic, on the object's ellipsoid. */
  Result<Place> ECEFGeo(Cartesian from) const noexcept {
    return Call<Place>("ECEFGeo", [&](Place& to) {
      return ::ECEFGeo(Handle(), from.x, from.y, from.z, &to.latitude, &to.longitude, &to.height);
    });
  }

  /** Along the great circle. */
  Result<Line> GCircLL(Position from, Position to) const noexcept { return Measured("GCircLL", ::GCircLL, from, to); }
  /** Along the rhumb line. */
  Result<Line> RLineLL(Position from, Position to) const noexcept { return Measured("RLineLL", ::RLineLL, from, to); }

  /** Sets a geoid grid, or none if null, and the constant. */
  Status SetGeoid(const char* fileName, double orthoHCorr = 0) noexcept {
    return Set("SetGeoid", ::SetGeoid(Handle(), fileName, orthoHCorr));
  }
  /** The geoid grid and the constant. */
  Result<Geoid> GetGeoid() const {
    double constant = 0;
    Result<std::string> path = Path(
        "GetGeoid", [&](char* buffer, std::int32_t size) { return ::GetGeoid(Handle(), buffer, size, &constant); });
    return {{std::move(path.value), constant}, path.code, path.function};
  }
  /** The geoid undulation. With codes 8 and 13 the value is the constant alone. */
  Result<double> Undulation(Position at) noexcept {
    return Call<double>("Undulation", [&](double& n) { return ::Undulation(Handle(), at.latitude, at.longitude, &n); });
  }
  /** A horizontal length in metres, from grid units. */
  Result<double> Metres(double gridUnits) const noexcept {
    return Converted("HConvert", ::HConvert, gridUnits, LATIGO_TO_METRES);
  }
  /** A horizontal length in grid units, from metres. */
  Result<double> GridUnits(double metres) const noexcept {
    return Converted("HConvert", ::HConvert, metres, LATIGO_FROM_METRES);
  }
  /** A vertical length in metres, from vertical units. */
  Result<double> VerticalMetres(double verticalUnits) const noexcept {
    return Converted("VConvert", ::VConvert, verticalUnits, LATIGO_TO_METRES);
  }
  /** A vertical length in vertical units, from metres. */
  Result<double> VerticalUnits(double metres) const noexcept {
    return Converted("VConvert", ::VConvert, metres, LATIGO_FROM_METRES);
  }

  /** Replaces the adjustment record. */
  Status SetAdjustment(const Adjustment& adjustment) noexcept {
    return Set("SetAdjustment", ::SetAdjustment(Handle(), &adjustment));
  }
  /** The adjustment record. */
  Result<Adjustment> GetAdjustment() const noexcept {
    return Call<Adjustment>("GetAdjustment",
                            [&](Adjustment& adjustment) { return ::GetAdjustment(Handle(), &adjustment); });
  }
  /** The name of a unit or axis, in Windows-1252; request: one of `LatigoName`. */
  Result<std::string> GetLocalName(std::int32_t request, const char* language) const {
    return Text<NameSize>("GetLocalName",
                          [&](char* buffer) { return ::GetLocalName(Handle(), request, language, buffer, NameSize); });
  }

 private:
  static constexpr std::int32_t NameSize = 64;  // the names of the library are shorter

  struct Destroy {
    void operator()(GeodesyHandle handle) const noexcept { ::DestroyGeodesy(handle); }
  };

  static Status Set(const char* function, std::int32_t done) noexcept { return {Code(done), function}; }

  static std::int32_t Code(std::int32_t done) noexcept { return done != 0 ? 0 : ::GetGeodesyError(); }

  static Result<Geodesy> Made(const char* function, GeodesyHandle handle) noexcept {
    const std::int32_t code = ::GetGeodesyError();
    return {Geodesy(handle), code, function};
  }

  template <typename Value, typename Operation>
  static Result<Value> Call(const char* function, Operation operation) noexcept {
    Value value{};
    const std::int32_t done = operation(value);
    return {value, Code(done), function};
  }

  template <std::size_t Size, typename Operation>
  static Result<std::string> Text(const char* function, Operation operation) {
    std::array<char, Size + 1> buffer{};
    const std::int32_t code = Code(operation(buffer.data()));
    return {buffer.data(), code, function};
  }

  // A path that fills the buffer may have been cut: then the buffer grows. The library does not terminate such a text,
  // so the last byte is reserved for the NUL.
  template <typename Operation>
  static Result<std::string> Path(const char* function, Operation operation) {
    for (std::string text(512, '\0');; text.assign(text.size() * 2, '\0')) {
      const std::int32_t code = Code(operation(text.data(), static_cast<std::int32_t>(text.size() - 1)));
      const std::size_t length = (std::min)(text.find('\0'), text.size());
      if (length < text.size() - 2) {
        text.resize(length);
        return {std::move(text), code, function};
      }
    }
  }

  template <typename Operation>
  static Result<Place> Moved(const char* function, Place place, Operation operation) noexcept {
    const std::int32_t done = operation(&place.latitude, &place.longitude, &place.height);
    return {place, Code(done), function};
  }

  template <typename Measure>
  Result<Line> Measured(const char* function, Measure measure, Position from, Position to) const noexcept {
    Line line{};
    line.distance = measure(Handle(), from.latitude, from.longitude, to.latitude, to.longitude, &line.azimuth);
    return {line, ::GetGeodesyError(), function};
  }

  template <typename Convert>
  Result<double> Converted(const char* function, Convert convert, double value, std::uint8_t direction) const noexcept {
    const std::int32_t done = convert(Handle(), &value, direction);
    return {value, Code(done), function};
  }

  static constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
  static void Spoil(Grid& grid) noexcept { grid = {NaN, NaN}; }
  static void Spoil(Position& position) noexcept { position = {NaN, NaN}; }
  static void Spoil(Place& place) noexcept { place = {NaN, NaN, NaN}; }

  template <typename From, typename To, typename Operation>
  static Batch Each(const char* function, Span<const From> from, Span<To> to, Span<std::int32_t> codes,
                    Operation operation) noexcept {
    Batch batch{0, 0, 0, function};
    const std::size_t count = (std::min)(from.size(), to.size());
    for (std::size_t i = 0; i < count; ++i) {
      const auto result = operation(from[i]);
      to[i] = result.value;
      if (!result) {
        Spoil(to[i]);
        if (batch.failures++ == 0) {
          batch.first = i;
          batch.code = result.code;
        }
      }
      if (i < codes.size()) {
        codes[i] = result.code;
      }
    }
    return batch;
  }

  std::unique_ptr<std::remove_pointer_t<GeodesyHandle>, Destroy> handle_{};
};

}  // namespace latigo::api

#endif

#endif
