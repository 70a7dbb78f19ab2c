// The smallest dynamic library that converts a position: the minimum cost of loading.
#include "floors/transverse_mercator.h"

extern "C" __attribute__((visibility("default"))) void FloorGeoXY(const GeodesyParams* params, double latitude,
                                                                  double longitude, double* x, double* y) {
  bench::TransverseMercatorFloor(*params).GeoXY(latitude, longitude, *x, *y);
}
