// The datum of a coordinate system: converts positions between its own ellipsoid and WGS-84 or another ellipsoid, by
// the seven-parameter (Helmert) transformation or by a datum grid, through earth-centred cartesian coordinates.
//
// The parameters are those from WGS-84 (or the other datum) to the own datum, in the coordinate frame convention with
// small angles. A datum grid contains shifts between the own datum and WGS-84 only.
#pragma once

#include <latigo/latigo.h>

#include <cstdint>
#include <memory>

#include "datum/ellipsoid.h"
#include "grid/interp_file.h"

namespace latigo {

// A conversion may read the grid file, so only one thread at a time may use an object. Latitudes and longitudes are
// radians, h is the ellipsoidal height in metres and may be null, which means 0; all are read and written.
class DatumShift {
 public:
  // For positions on an ellipsoid that outlives the object.
  explicit DatumShift(const Ellipsoid& own) : Own(own) {}

  // Sets the seven parameters and closes any datum grid. The scale alone does not make a shift.
  void SetEllDiff(const EllDiff& diff);
  // The parameters; with a datum grid all 0 and a scale of -1.
  void GetEllDiff(EllDiff& diff) const;

  // Replaces the parameters by a datum grid; null removes both. On failure throws errcode; the grid and the parameters
  // are then cleared, and if a shift was active, conversions still change the ellipsoid, without a shift.
  void SetEllModel(const char* path);
  // Copies the path of the grid as strncpy does with size - 1, or an empty text.
  void GetEllModel(char* buffer, std::int32_t size) const;

  void CloseFile() { DatumFile.reset(); }

  // From WGS-84 to the own datum, and from the own datum to WGS-84. Nothing changes without an active shift. A point
  // outside the grid, or in rows that cannot be read, changes the ellipsoid without a shift.
  void WGS84Conv(double& latitude, double& longitude, double* h);
  void InvWGS84Conv(double& latitude, double& longitude, double* h);

  // The same for another ellipsoid (a in metres, flattening f), by the parameters. Nothing changes with a datum grid or
  // between equal ellipsoids.
  void EllConv(double& latitude, double& longitude, double* h, double a, double f) const;
  void InvEllConv(double& latitude, double& longitude, double* h, double a, double f) const;

 private:
  // The grid's translation at `position`; `own` is the same latitude, longitude and height on the own ellipsoid.
  EllDiff LocalEllDiff(const Geographic& position, const Cartesian& own);
  bool ShiftsFrom(const Ellipsoid& other) const;

  const Ellipsoid& Own;
  std::unique_ptr<InterpFile> DatumFile;  // null without a datum grid
  EllDiff Diff = {0, 0, 0, 1, 0, 0, 0};
  bool DatumActive = false;  // a shift is active
};

}  // namespace latigo
