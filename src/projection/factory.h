// The only place that knows the concrete projections.
#pragma once

#include <latigo/latigo.h>

#include <memory>

#include "projection/projection.h"

namespace latigo {

// Makes the projection of the record's `Kind`. Throws errcode 3, 4 or 5 for a reciprocal flattening or a unit of 0 or
// an unknown kind, tested in this order, and what the projection's constructor throws.
std::unique_ptr<const Projection> MakeProjection(const GeodesyParams& params);

}  // namespace latigo
