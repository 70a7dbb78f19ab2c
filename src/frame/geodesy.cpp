#include "frame/geodesy.h"

#include <atomic>

#include "errors/log_line.h"
#include "frame/units.h"
#include "projection/factory.h"

namespace latigo {

namespace {
std::atomic<std::int32_t> LiveCount = 0;  // existing objects in the process

void Convert(double& value, double metresPerUnit, bool toMetres) {
  value = toMetres ? value * metresPerUnit : value / metresPerUnit;
}

}  // namespace

Geodesy::Geodesy(const GeodesyParams& params)
    : Proj(MakeProjection(params)),
      Shift(*Proj),
      Local(Proj->Unit),
      VertUnit(params.Unit),
      UnitId(FindUnit(params.Unit)),
      VertUnitId(UnitId) {
  ++LiveCount;
}

Geodesy::~Geodesy() {
  // Its files are closed before the line that reports the last object's end.
  Shift.CloseFile();
  Model.CloseFile();
  if (--LiveCount == 0) {
    LogLine("LATIGO - last instance");
  }
}

void Geodesy::GetParams(GeodesyParams& params) const {
  params = {.SemiMajorAxis = Proj->a(),
            .InvFlattening = 1.0 / Proj->f(),
            .Kind = Proj->Kind(),
            .Unit = Proj->Unit,
            .ScaleFactor = Proj->ScaleFactor,
            .CentralMeridian = Proj->CentralMeridian,
            .RefLatitude = Proj->RefLatitude,
            .NorthParallel = Proj->NorthParallel,
            .SouthParallel = Proj->SouthParallel,
            .SkewAzimuth = Proj->SkewAzimuth,
            .FalseEasting = Proj->FalseEasting,
            .FalseNorthing = Proj->FalseNorthing};
}

errcode Geodesy::SetAdjust(const Adjustment& adjustment) {
  errcode result = Local.SetAdjust(adjustment);
  // Other types do not change the axis names.
  if (result.Succeeded() && Local.IsSimilarity()) {
    FirstAxisId = (adjustment.AdjustType & LATIGO_REVERSE_X) != 0 ? AxisWesting : AxisEasting;
    SecondAxisId = (adjustment.AdjustType & LATIGO_REVERSE_Y) != 0 ? AxisSouthing : AxisNorthing;
  }
  return result;
}

void Geodesy::HConvert(double& value, bool toMetres) const {
  Convert(value, Proj->Unit, toMetres);
}

void Geodesy::VConvert(double& value, bool toMetres) const {
  Convert(value, VertUnit, toMetres);
}

}  // namespace latigo
