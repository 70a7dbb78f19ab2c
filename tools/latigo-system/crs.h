// What a projected coordinate reference system is, as PROJ describes it: method and parameters, ellipsoid, prime
// meridian, units and axes, area of use.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "database.h"

namespace latigo::system {

// Method and parameters of a conversion or transformation, by their EPSG codes.
struct Parameter {
  int code;  // 0 for one without a code of EPSG
  std::string name;
  double value;   // in the unit
  double factor;  // of the unit: radians, metres or 1
  std::string unit;

  double Si() const { return value * factor; }
  double Degrees() const;
  double ArcSeconds() const;
};

struct Method {
  int code = 0;  // of EPSG; 0 for another authority's
  std::string name;
  std::vector<Parameter> parameters;

  // "EPSG:9807 Transverse Mercator"
  std::string Label() const;
  // Throws Refused if there is no such parameter, and none that goes without saying.
  const Parameter& Find(int wanted) const;
  // In the parameter's own unit; 0 if there is no such parameter.
  double Value(int wanted) const;
  bool Has(int wanted) const;
};

Method MethodOf(const Database& database, const PJ* operation);

// The longitude of a system's prime meridian, degrees from Greenwich.
double GreenwichLongitude(const Database& database, const PJ* crs);

// One of two axes on the ground or the map.
struct Axis {
  bool first = true;      // of our order: longitude, or easting; false for latitude and northing
  bool reversed = false;  // positive to the west or south
  double unit = 1;        // radians or metres
  std::string direction;  // "north", "south", "east", "west"
  std::string name;       // "Easting"
  std::string unitName;
};
using Axes = std::array<Axis, 2>;

// Degrees; east may be beyond 180, for an area across that meridian.
struct Area {
  double south, west, north, east;
  std::string name;  // empty for an area that is only assumed

  bool Holds(double latitude, double longitude) const;
  // "49.79 to 60.94 N, 8.82 W to 1.92 E"
  std::string Limits() const;
};

struct Crs {
  std::string id;       // "EPSG:27700"; empty for one without a code
  std::string otherId;  // the code that the definition names, though it is another system; empty for none
  std::string name;     // "OSGB36 / British National Grid"
  std::string source;   // version of the data, empty for one that is not from the database
  bool deprecated = false;
  Pj projected;
  Pj geodetic;    // its base
  Pj boundShift;  // the transformation that the definition itself has; null for none
  Method method;
  double semiMajorAxis = 0;
  double inverseFlattening = 0;  // 0 for a sphere
  std::string ellipsoid;
  double primeMeridian = 0;  // degrees east of Greenwich
  std::string primeMeridianName;
  Axes mapAxes;
  Axes groundAxes;
  double verticalUnit = 0;  // metres; 0 if there is no height
  std::string heights;      // name of the vertical system; empty for none
  bool depths = false;      // it counts downwards
  Area area;

  const Axis& MapAxis(bool first) const { return mapAxes[0].first == first ? mapAxes[0] : mapAxes[1]; }
  double Unit() const { return mapAxes[0].unit; }
};

// The area of use of a system or operation; without a name if it is not known.
Area AreaOf(const Database& database, const PJ* object);

// Reads a code, a name, a PROJ string, WKT or PROJJSON. Throws Refused if it is no projected system of the earth.
Crs ReadCrs(const Database& database, const std::string& text);

// The text itself, or what the file of that name contains; - is standard input.
std::string TextOrFile(const std::string& text);

}  // namespace latigo::system
