// A coordinate system at work for a command: its object, and how the command reads and writes positions.
#pragma once

#include <latigo/latigo.h>

#include <cstdint>
#include <memory>

#include "commands.h"
#include "coordinate_system.h"
#include "grid/interp_file.h"
#include "point_line.h"

namespace latigo::cli {

// How a value is written.
enum class Quantity { Length, Latitude, Longitude, Azimuth, Factor };

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

// Why a point is doubtful though it has values: a bit each.
enum class Doubt : unsigned { Unshifted = 1, NoRoundTrip = 2, WholeHeight = 4 };
inline constexpr int Doubts = 3;

// What a command makes of a point; up to three values.
struct Result {
  Value values[3];
  int count = 0;
  std::int32_t code = 0;           // of the library call that failed
  const char* function = nullptr;  // that call; null if all succeeded
  const char* fault = nullptr;     // why the point fails though no call does
  unsigned doubts = 0;

  void Add(double value, Quantity quantity) { values[count++] = {value, quantity}; }

  void Add(Doubt doubt) { doubts |= static_cast<unsigned>(doubt); }

  // Takes the outcome of a library call; true if it succeeded.
  bool Call(std::int32_t success, const char* name) {
    if (success == 0) {
      code = GetGeodesyError();
      function = name;
    }
    return success != 0;
  }
};

// What lies between the two sides of a command.
struct Between {
  bool shift = false;         // the geographic side is WGS-84, and the datum shift lies between
  bool unshifted = false;     // points outside the datum grid keep their latitude and longitude
  bool geoidOnDatum = false;  // the geoid belongs to the section's own ellipsoid, though the points are WGS-84
  bool localGrid = true;      // the local grid of the section is applied
};

// One object, so one thread at a time.
class Converter {
 public:
  // Throws UsageError if the section does not open.
  Converter(const PointOptions& options, const Between& between);

  GeodesyHandle Handle() const { return object_.Handle(); }

  // The position of a line on the object's datum; false if the datum shift fails, or outside its grid.
  bool ReadGeographic(const PointLine& point, Position& position, Result& result) const;
  void WriteGeographic(const Position& position, Result& result) const;

  // The height on the grid's side of a line with a height, from the position as ReadGeographic gave it: less the
  // undulation, in the vertical unit. False if the undulation fails.
  bool ToGridHeight(const PointLine& point, const Position& position, double& height, Result& result) const;
  // From a position on the object's datum and the line's height on the grid's side to the position that the command
  // writes, with --wgs84 on WGS-84. False if a call fails.
  bool FromGridHeight(const PointLine& point, Position& position, Result& result) const;

  bool HasGeoid() const { return hasGeoid_; }
  bool GeoidOnWgs84() const { return between_.shift && !between_.geoidOnDatum; }
  // The undulation at a position of the line, taken by ReadGeographic to the object's datum.
  bool ReadUndulation(const PointLine& point, const Position& position, double& undulation, Result& result) const;

  // Doubts a result whose way back misses by more than a metre. Both are tried far from the projection's origin only.
  void CheckForward(const Position& from, double x, double y, Result& result) const;
  void CheckInverse(double x, double y, const Position& to, Result& result) const;

 private:
  bool InDatumGrid(double latitude, double longitude, Result& result) const;
  bool NearOrigin(double x, double y) const;
  bool UndulationAt(double latitude, double longitude, double& undulation, Result& result) const;
  const Between between_;
  const bool lonlat_;  // longitude is written before latitude
  api::Geodesy object_;
  double centralMeridian_ = 0;
  bool hasGeoid_ = false;
  bool hasVerticalUnit_ = false;
  std::unique_ptr<InterpFile> datumGrid_;  // with --wgs84: the grid of the datum shift, to see where it has no value
  double metresPerUnit_ = 1;
  double originX_ = 0, originY_ = 0;  // of the grid; the limits count from here, in grid units
  double nearLongitude_ = 0, nearX_ = 0, nearY_ = 0;
};

}  // namespace latigo::cli
