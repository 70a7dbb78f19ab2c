// A coordinate system at work for a command: its object, and how the command's options read and write positions.
#pragma once

#include <latigo/latigo.h>

#include <cstdint>

#include "commands.h"
#include "coordinate_system.h"
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

// One object, so one thread at a time.
class Converter {
 public:
  // Throws UsageError if the section does not open.
  explicit Converter(const Options& options);

  GeodesyHandle Handle() const { return object_.get(); }
  const Options& CommandOptions() const { return options_; }

  // The position of a line; false if the datum shift fails.
  bool ReadGeographic(const PointLine& point, Position& position, Result& result) const;
  void WriteGeographic(const Position& position, Result& result) const;

  // The undulation at a position if the line has a height and the section a geoid, else 0; false if it fails.
  bool ReadUndulation(const PointLine& point, const Position& at, double& undulation, Result& result) const;

 private:
  const Options& options_;
  Object object_;
  double centralMeridian_ = 0;
  bool hasGeoid_ = false;
};

}  // namespace latigo::cli
