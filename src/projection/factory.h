// The only place that knows the concrete projections.
#pragma once

#include <latigo/latigo.h>

#include <memory>

#include "projection/projection.h"

namespace latigo {

// Makes the projection of the record's `Kind`. Throws errcode 3, 4 or 5 for a reciprocal flattening of 0, a unit of 0
// or an unknown kind, tested in this order, and the failures of the projection's constructor.
std::unique_ptr<const Projection> MakeProjection(const GeodesyParams& params);

}  // namespace latigo
