// Records that several benchmarks share.
#pragma once

#include <latigo/latigo.h>

namespace bench {

inline constexpr double Degree = 0.017453292519943295;  // radians

// Transverse Mercator with its origin on the equator at Greenwich, for operations that do not use the projection.
constexpr GeodesyParams OnEllipsoid(double semiMajorAxis, double invFlattening) {
  return {.SemiMajorAxis = semiMajorAxis,
          .InvFlattening = invFlattening,
          .Kind = LATIGO_KIND_TRANSVERSE_MERCATOR,
          .Unit = 1,
          .ScaleFactor = 1,
          .CentralMeridian = 0,
          .RefLatitude = 0,
          .NorthParallel = 0,
          .SouthParallel = 0,
          .SkewAzimuth = 0,
          .FalseEasting = 0,
          .FalseNorthing = 0};
}

inline constexpr GeodesyParams BritishGrid = {.SemiMajorAxis = 6377563.396,
                                              .InvFlattening = 299.3249646,
                                              .Kind = LATIGO_KIND_TRANSVERSE_MERCATOR,
                                              .Unit = 1,
                                              .ScaleFactor = 0.9996012717,
                                              .CentralMeridian = -2 * Degree,
                                              .RefLatitude = 49 * Degree,
                                              .NorthParallel = 0,
                                              .SouthParallel = 0,
                                              .SkewAzimuth = 0,
                                              .FalseEasting = 400000,
                                              .FalseNorthing = -100000};

}  // namespace bench
