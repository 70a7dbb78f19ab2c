// The coordinate system of a command: its object, and the command's input and output of positions.
#pragma once

#include <latigo/latigo.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "commands.h"
#include "coordinate_system.h"
#include "doubts.h"
#include "grid/interp_file.h"
#include "point_line.h"

namespace latigo::cli {

// The type of an output value.
enum class Quantity { Length, Latitude, Longitude, Azimuth, Factor, Angle, ArcSeconds };

// Of a result: those of both systems.
inline constexpr int AllDoubts = 2 * Doubts;

struct Value {
  double value;
  Quantity quantity;
};

// Geographic, on the object's datum: radians, and a height in metres.
struct Position {
  double latitude = 0;
  double longitude = 0;
  double h = 0;
};

// The result of a command for a point: up to seven values.
struct Result {
  Value values[7];
  int count = 0;
  std::int32_t code = 0;           // of the library call that failed
  const char* function = nullptr;  // that call; null if all succeeded
  const char* fault = nullptr;     // why the point fails without a failed call
  unsigned doubts = 0;     // the bits of each system; those of the second, if a command has two, follow the first's
  std::string_view place;  // the system that failed, if a command has two

  void Add(double value, Quantity quantity) { values[count++] = {value, quantity}; }

  void Add(Doubt doubt) { doubts |= static_cast<unsigned>(doubt); }

  // Records the outcome of a library call; returns true if it succeeded.
  bool Call(std::int32_t success, const char* name) {
    if (success == 0) {
      code = GetGeodesyError();
      function = name;
    }
    return success != 0;
  }
};

// The steps between input and output of a command.
struct Between {
  bool shift = false;             // positions are WGS-84: apply the datum shift
  bool unshifted = false;         // points outside the datum grid are converted without a shift
  bool geoidOnDatum = false;      // undulations refer to the section's own ellipsoid, also for WGS-84 positions
  bool localGrid = true;          // the local grid of the section is applied
  bool noGeoid = false;           // heights are ellipsoidal, also with a geoid
  bool heightShift = false;       // without the shift of positions: heights with a geoid above WGS-84 go through it
  GeodesyHandle datum = nullptr;  // whose datum shift is that of the section, which has none
};

// The path of an object's datum grid; empty without one.
std::string GridOf(GeodesyHandle handle);

// Contains one object, so only one thread at a time may use it.
class Converter {
 public:
  // Throws UsageError if the section does not open.
  Converter(const PointOptions& options, const Between& between);

  GeodesyHandle Handle() const { return object_.Handle(); }
  const std::string& Name() const { return name_; }

  // The system to which convert leads; null for other commands.
  const Converter* Target() const { return target_.get(); }
  void SetTarget(std::unique_ptr<const Converter> target) { target_ = std::move(target); }

  // The text of a doubt of a result, by its bit: with the system in which it arises if the command has two.
  std::string TextOf(std::size_t doubt) const;

  // The position of a line on the object's datum; false if the datum shift fails, or outside its grid.
  bool ReadGeographic(const PointLine& point, Position& position, Result& result) const;
  // Converts a position on the object's datum to WGS-84 if the steps have the shift; false if that fails.
  bool ToWgs84(Position& position, Result& result) const;
  void WriteGeographic(const Position& position, Result& result) const;

  // Marks a result as doubtful that contains the height above the object's ellipsoid of a point on WGS-84, or the
  // reverse, if the datum shift is a grid of latitudes and longitudes.
  void UseShiftedHeight(Result& result) const {
    if (keepsHeights_) {
      result.Add(Doubt::KeptHeight);
    }
  }

  // Whether the datum shift of the steps can be applied at a position on either datum; false if the point fails because
  // the datum grid has no value there. Brings the longitude within half a turn, where the library looks it up.
  bool InDatumGrid(double latitude, double& longitude, Result& result) const;

  // The grid height of a line with a height, in the vertical unit, from the position of ReadGeographic: less the
  // undulation. Returns false if that or the datum shift of heights fails.
  bool ToGridHeight(const PointLine& point, const Position& position, double& height, Result& result) const;
  // Converts a position on the object's datum and the line's grid height to the output position, with the shift on
  // WGS-84. Returns false if a call fails.
  bool FromGridHeight(const PointLine& point, Position& position, Result& result) const;

  bool HasGeoid() const { return hasGeoid_; }
  bool GeoidOnWgs84() const { return (between_.shift && !between_.geoidOnDatum) || between_.heightShift; }
  // The undulation at a position of the line, converted by ReadGeographic to the object's datum.
  bool ReadUndulation(const PointLine& point, const Position& position, double& undulation, Result& result) const;

  // Mark a result as doubtful if its round-trip error exceeds one metre; checked only far from the projection's origin.
  void CheckForward(const Position& from, double x, double y, Result& result) const {
    if (!roundTrip_.HoldsForward(from.latitude, from.longitude, x, y)) {
      result.Add(Doubt::NoRoundTrip);
    }
  }
  void CheckInverse(double x, double y, const Position& to, Result& result) const {
    if (!roundTrip_.HoldsInverse(x, y, to.latitude, to.longitude)) {
      result.Add(Doubt::NoRoundTrip);
    }
  }

 private:
  bool OwnToWgs84(Position& position, Result& result) const;
  bool UndulationAt(double latitude, double longitude, double& undulation, Result& result) const;
  const Between between_;
  const bool lonlat_;  // longitude is written before latitude
  std::string name_;   // FILE [SECTION]
  api::Geodesy object_;
  RoundTrip roundTrip_;
  std::unique_ptr<const Converter> target_;
  bool hasGeoid_ = false;
  bool hasVerticalUnit_ = false;
  std::unique_ptr<InterpFile> datumGrid_;  // with a shift: the datum grid, to find points outside it
  bool keepsHeights_ = false;              // that grid has no heights
};

}  // namespace latigo::cli
