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

errcode Geodesy::GeoXY(double& x, double& y, double latitude, double longitude) const {
  if (const std::int32_t code = Proj->GeoXY(x, y, latitude, longitude).code(); code != 0) {
    return errcode(code, Fatal);
  }
  AdjustForward(x, y);
  return errcode();
}

errcode Geodesy::XYGeo(double x, double y, double& latitude, double& longitude) const {
  AdjustInverse(x, y);
  return Proj->XYGeo(x, y, latitude, longitude);
}

// The projection's own coordinates: the local grid takes no part.
errcode Geodesy::Scale(double x, double y, double& k) const {
  return Proj->Scale(x, y, k);
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
