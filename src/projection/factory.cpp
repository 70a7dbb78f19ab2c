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
#define LATIGO_KIND(Class, name, number, code, words, ...) \
  case number:                                             \
    return std::make_unique<Class>(params);
#include "kinds.def"
#undef LATIGO_KIND
    default:
      throw errcode(UnknownKind, Fatal);
  }
}

}  // namespace latigo
