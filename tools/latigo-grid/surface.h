// Values over latitude and longitude: a public grid, or a grid file as the library reads it. Angles are degrees.
#pragma once

#include <array>
#include <cmath>
#include <stdexcept>
#include <string>

namespace latigo::grids {

// An input or an argument that is wrong: one line for people, and exit status 2.
class Refused : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

// What the values of a node are; the number is how many there are.
enum class Kind {
  Geoid = 1,        // the undulation, metres
  Shift = 2,        // latitude and longitude from the object's datum to WGS-84, arc seconds, north and east positive
  Translation = 3,  // dX, dY, dZ from WGS-84 to the object's datum, metres
};

constexpr int Depth(Kind kind) {
  return static_cast<int>(kind);
}

using Values = std::array<double, 3>;  // the first Depth of them count

// East is more than west, and may be more than 180.
struct Area {
  double south, west, north, east;
};

struct Ellipsoid {
  double a = 6378137;  // metres
  double invFlattening = 298.257223563;
};

class Surface {
 public:
  virtual ~Surface() = default;
  virtual Kind TheKind() const = 0;
  virtual Area Limits() const = 0;
  // False outside the limits, and where any node that counts has no value.
  virtual bool At(double latitude, double longitude, Values& values) const = 0;
};

inline constexpr double Pi = 3.141592653589793;
inline constexpr double Radians = Pi / 180;                          // in a degree
inline constexpr double MetresPerArcSecond = 6378137 * Pi / 648000;  // on the equator

// The length of a difference of values, metres.
inline double Metres(Kind kind, const Values& difference, double latitude) {
  switch (kind) {
    case Kind::Geoid:
      return std::fabs(difference[0]);
    case Kind::Shift:
      return MetresPerArcSecond * std::hypot(difference[0], difference[1] * std::cos(latitude * Radians));
    case Kind::Translation:
      return std::hypot(difference[0], difference[1], difference[2]);
  }
  return 0;
}

inline Values Minus(const Values& left, const Values& right) {
  return {left[0] - right[0], left[1] - right[1], left[2] - right[2]};
}

}  // namespace latigo::grids
