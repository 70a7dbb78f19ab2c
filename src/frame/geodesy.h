// `Geodesy`: one coordinate system, the object behind a handle. It coordinates; the work of each subject stands in that
// subject's folder: datum/datum_shift.cpp, grid/geoid.cpp, adjust/adjustment.cpp, frame/local_names.cpp.
//
// A conversion may read a grid file, so one object serves one thread at a time. The members carry the names of the
// exports that they serve; include/latigo/latigo.h documents them.
#pragma once

#include <latigo/latigo.h>

#include <cstdint>
#include <memory>

#include "datum/ellipsoid.h"
#include "frame/errcode.h"
#include "grid/interp_file.h"
#include "projection/projection.h"

namespace latigo {

// Ids of the axes in the string table.
enum AxisId : std::int32_t { AxisEasting = 16, AxisNorthing = 17, AxisWesting = 18, AxisSouthing = 19 };

class Geodesy {
 public:
  // Throws errcode for a record that gives no object.
  explicit Geodesy(const GeodesyParams& params);
  ~Geodesy();
  Geodesy(const Geodesy&) = delete;
  Geodesy& operator=(const Geodesy&) = delete;

  // Projection, with the local grid behind it.
  errcode GeoXY(double& x, double& y, double latitude, double longitude) const {
    if (const std::int32_t code = Proj->GeoXY(x, y, latitude, longitude).code(); code != 0) {
      return errcode(code, Fatal);
    }
    AdjustForward(x, y);
    return errcode();
  }
  errcode XYGeo(double x, double y, double& latitude, double& longitude) const {
    AdjustInverse(x, y);
    return Proj->XYGeo(x, y, latitude, longitude);
  }
  // At the projection's own coordinates: the local grid takes no part.
  errcode Scale(double x, double y, double& k) const { return Proj->Scale(x, y, k); }
  void GetParams(GeodesyParams& params) const;
  const Projection& GetProjection() const { return *Proj; }

  // Datum. A null h works at height 0.
  void SetEllDiff(const EllDiff& diff);
  void GetEllDiff(EllDiff& diff) const;
  void SetEllModel(const char* path);  // null for none; throws errcode
  void GetEllModel(char* buffer, std::int32_t size) const;
  void WGS84Conv(double& latitude, double& longitude, double* h);
  void InvWGS84Conv(double& latitude, double& longitude, double* h);
  void EllConv(double& latitude, double& longitude, double* h, double a, double f) const;
  void InvEllConv(double& latitude, double& longitude, double* h, double a, double f) const;

  // Heights.
  errcode LoadGeoid(const char* path);                 // null for none
  void SetGeoid(const char* path, double orthoHCorr);  // throws errcode
  void SetOrthoHCorr(double value) { OrthoHCorr = value; }
  const char* GeoidPath() const;  // null without a grid
  void GetGeoid(char* buffer, std::int32_t size, double* orthoHCorr) const;
  errcode Undulation(double latitude, double longitude, double& undulation);
  void HConvert(double& value, bool toMetres) const;
  void VConvert(double& value, bool toMetres) const;

  // Local grid.
  errcode SetAdjust(const Adjustment& adjustment);
  void GetAdjust(Adjustment& adjustment) const;

  // Names.
  void SetVertUnit(double metresPerUnit);  // 0 takes the horizontal unit
  // The string id, without language, of a request of GetLocalName; 0 for none.
  std::int32_t LocalNameId(std::int32_t request) const;

 private:
  // The stage of the local grid, which most objects do not have.
  void AdjustForward(double& x, double& y) const {
    if (AdjustmentType() != 0) {
      DoAdjustForward(x, y);
    }
  }
  void AdjustInverse(double& x, double& y) const {
    if (AdjustmentType() != 0) {
      DoAdjustInverse(x, y);
    }
  }
  void DoAdjustForward(double& x, double& y) const;
  void DoAdjustInverse(double& x, double& y) const;
  std::uint32_t AdjustmentType() const { return Adjust.AdjustType & 0xFFFFU; }
  EllDiff LocalEllDiff(const Geographic& position, const Cartesian& own);  // of the datum grid
  bool ShiftsFrom(const Ellipsoid& other) const;

  std::unique_ptr<const Projection> Proj;
  std::unique_ptr<InterpFile> GeoidFile;  // null without a geoid grid
  std::unique_ptr<InterpFile> DatumFile;  // null without a datum grid
  EllDiff Diff = {0, 0, 0, 1, 0, 0, 0};
  bool DatumActive = false;  // a shift is in force
  Adjustment Adjust = {0, 0, 0, 0, 1, 0, 0};
  double OrthoHCorr = 0;  // added to every undulation
  double VertUnit;        // metres per vertical unit
  std::int32_t UnitId;    // id in the unit table, or 0
  std::int32_t VertUnitId;
  std::int32_t FirstAxisId = AxisEasting;
  std::int32_t SecondAxisId = AxisNorthing;
};

}  // namespace latigo
