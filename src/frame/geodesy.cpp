#include "frame/geodesy.h"

#include <atomic>

#include "frame/log_line.h"
#include "frame/units.h"
#include "projection/factory.h"

namespace latigo {

namespace {
std::atomic<std::int32_t> LiveCount = 0;  // objects alive in the process
}

Geodesy::Geodesy(const GeodesyParams& params)
    : Proj(MakeProjection(params)), VertUnit(params.Unit), UnitId(FindUnit(params.Unit)), VertUnitId(UnitId) {
  ++LiveCount;
}

Geodesy::~Geodesy() {
  Proj.reset();
  GeoidFile.reset();
  DatumFile.reset();
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

}  // namespace latigo
