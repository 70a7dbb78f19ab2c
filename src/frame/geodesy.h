// `Geodesy`: one coordinate system, the object that a handle refers to. It coordinates a projection and three parts,
// each a class in its subject's folder: the datum shift, the geoid model and the local grid. It holds units and names.
//
// A conversion may read a grid file, so only one thread at a time may use an object. Members have the names of their
// exports; include/latigo/latigo.h documents them.
#pragma once

#include <latigo/latigo.h>

#include <cstdint>
#include <memory>

#include "adjust/local_grid.h"
#include "datum/datum_shift.h"
#include "errors/errcode.h"
#include "grid/geoid_model.h"
#include "projection/projection.h"

namespace latigo {

// Ids of the axes in the string table.
enum AxisId : std::int32_t { AxisEasting = 16, AxisNorthing = 17, AxisWesting = 18, AxisSouthing = 19 };

class Geodesy {
 public:
  // Throws errcode for an invalid record.
  explicit Geodesy(const GeodesyParams& params);
  ~Geodesy();
  Geodesy(const Geodesy&) = delete;
  Geodesy& operator=(const Geodesy&) = delete;

  // Projection followed by local grid; and the inverse.
  errcode GeoXY(double& x, double& y, double latitude, double longitude) const {
    errcode result = Proj->GeoXY(x, y, latitude, longitude);
    if (result.Succeeded()) {
      Local.Forward(x, y);
    }
    return result;
  }
  errcode XYGeo(double x, double y, double& latitude, double& longitude) const {
    Local.Inverse(x, y);
    return Proj->XYGeo(x, y, latitude, longitude);
  }
  // At the projection's coordinates, without the local grid.
  errcode Scale(double x, double y, double& k) const { return Proj->Scale(x, y, k); }
  void GetParams(GeodesyParams& params) const;
  const Projection& GetProjection() const { return *Proj; }

  DatumShift& Datum() { return Shift; }
  const DatumShift& Datum() const { return Shift; }
  GeoidModel& Geoid() { return Model; }
  const GeoidModel& Geoid() const { return Model; }

  errcode SetAdjust(const Adjustment& adjustment);
  void GetAdjust(Adjustment& adjustment) const { adjustment = Local.Record(); }

  // Units and names.
  void HConvert(double& value, bool toMetres) const;
  void VConvert(double& value, bool toMetres) const;
  void SetVertUnit(double metresPerUnit);  // 0: the horizontal unit
  // The string id, without language offset, of a request of GetLocalName; 0 for none.
  std::int32_t LocalNameId(std::int32_t request) const;

 private:
  const std::unique_ptr<const Projection> Proj;
  DatumShift Shift;
  GeoidModel Model;
  LocalGrid Local;
  double VertUnit;      // metres per vertical unit
  std::int32_t UnitId;  // id in the unit table; 0 for a unit without a name
  std::int32_t VertUnitId;
  std::int32_t FirstAxisId = AxisEasting;
  std::int32_t SecondAxisId = AxisNorthing;
};

}  // namespace latigo
