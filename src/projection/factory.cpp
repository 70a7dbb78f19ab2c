#include "projection/factory.h"

#include "projection/lambert.h"
#include "projection/mercator.h"
#include "projection/smerc.h"
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
    case 9:
      return std::make_unique<SMerc>(params);
    default:
      throw errcode(UnknownKind, Fatal);
  }
}

}  // namespace latigo
