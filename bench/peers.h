// The peers: the work of a row done by PROJ and GeographicLib. Without a peer's development files at build time its
// functions do nothing, and it is missing from the rows.
#pragma once

#include <latigo/latigo.h>

#include <functional>
#include <string>

#include "records.h"
#include "rows.h"

namespace bench {

// GeographicLib's units in radians and metres.
inline constexpr Units DegreesIn = {{Degree, Degree, Degree, Degree}, {1, 1, 1, 1}};
inline constexpr Units DegreesOut = {{1, 1, 1, 1}, {Degree, Degree, Degree, 1}};
inline constexpr Units DegreesInHeight = {{Degree, Degree, 1, 1}, {1, 1, 1, 1}};
inline constexpr Units DegreesOutHeight = {{1, 1, 1, 1}, {Degree, Degree, 1, 1}};

// PROJ's definition of an ellipsoid and a false origin: "+proj=NAME +a=... +rf=... +x_0=... +y_0=... EXTRA".
std::string ProjText(const std::string& name, const GeodesyParams& params, const std::string& extra);
// " +KEY=DEGREES" of an angle in radians.
std::string ProjAngle(const std::string& key, double radians);
std::string ProjNumber(const std::string& key, double value);

// proj_trans; input is latitude, longitude, height, output x, y, z.
void AddProjForward(Row& row, const Task& task, const Values& tolerance, const std::string& definition,
                    const std::string& name = "PROJ");
void AddProjInverse(Row& row, const Task& task, const Values& tolerance, const std::string& definition,
                    const std::string& name = "PROJ");

// proj_trans between positions, forward or inverse.
void AddProjShift(Row& row, const Task& task, const Values& tolerance, const std::string& definition, bool forward);
// A grid of undulations.
void AddProjUndulation(Row& row, const Task& task, const Values& tolerance, const std::string& grid);

// Creates and destroys a PROJ object; writes x and y of a position if the pointer is not null. Empty without PROJ.
std::function<void(Values*)> ProjMaker(const std::string& definition, double latitude, double longitude);

// The scale factor along the parallel, by proj_factors: at a position, and at grid coordinates, which proj_trans
// converts first.
void AddProjFactors(Row& row, const Task& task, const Values& tolerance, const std::string& definition);
void AddProjGridFactors(Row& row, const Task& task, const Values& tolerance, const std::string& definition);

// GeographicLib's class for the projection kind, if it has one.
void AddGeographicLibForward(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params);
void AddGeographicLibInverse(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params);

// GeographicLib's earth-centred coordinates on the record's ellipsoid; the shift adds the seven-parameter
// transformation from WGS-84.
void AddGeocentricForward(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params);
void AddGeocentricInverse(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params);
void AddGeocentricShift(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params,
                        const EllDiff& diff, bool forward);

// Distance and azimuth between two positions: both peers' geodesics, and GeographicLib's rhumb line.
void AddProjGeodesic(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params);
void AddGeographicLibGeodesic(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params);
void AddGeographicLibRhumb(Row& row, const Task& task, const Values& tolerance, const GeodesyParams& params);

}  // namespace bench
