#include "projection/factory.h"

#include "projection/albers.h"
#include "projection/azimuth_eq_dist.h"
#include "projection/cassini.h"
#include "projection/hotine.h"
#include "projection/lambert.h"
#include "projection/mercator.h"
#include "projection/oblique_cylindrical.h"
#include "projection/polar_stereo.h"
#include "projection/rso.h"
#include "projection/smerc.h"
#include "projection/stereographic.h"
#include "projection/transverse_mercator.h"

namespace latigo {

std::unique_ptr<const Projection> MakeProjection(const GeodesyParams& params) {
  if (params.InvFlattening == 0) {
    throw errcode(NoFlattening, Fatal);
  }
  if (params.Unit == 0) {
    throw errcode(NoUnit, Fatal);
  }
  switch (params.Kind) {
    case 1:
      return std::make_unique<Lambert>(params);
    case 2:
      return std::make_unique<Mercator>(params);
    case 3:
      return std::make_unique<TransverseMercator>(params);
    case 4:
      return std::make_unique<Stereographic>(params);
    case 5:
      return std::make_unique<ObliqueCylindrical>(params);
    case 6:
      return std::make_unique<Hotine>(params);
    case 7:
      return std::make_unique<RSO>(params);
    case 8:
      return std::make_unique<AzimuthEqDist>(params);
    case 9:
      return std::make_unique<SMerc>(params);
    case 10:
      return std::make_unique<Albers>(params);
    case 11:
      return std::make_unique<Cassini>(params);
    case 12:
      return std::make_unique<PolarStereo>(params);
    default:
      throw errcode(UnknownKind, Fatal);
  }
}

}  // namespace latigo
