// Names of the ellipsoids used in surveying.
#pragma once

namespace latigo {

// Finds the name of an ellipsoid by its semi-major axis (metres) and flattening (not its reciprocal). Returns a static
// text, or null for an ellipsoid without a name.
const char* EllipsoidName(double a, double f);

}  // namespace latigo
