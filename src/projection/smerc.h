// Mercator on a fixed sphere of 6378388 metres. Snyder, USGS PP 1395, chapter 7, (7-1) to (7-5).
//
// Reads no parameter: x and y are metres on the sphere, from the meridian of Greenwich and the equator. Longitudes are
// not wrapped.
// Domain: everything; the poles map to infinity.
// Accuracy: exact to rounding.
// Failures: none. Scale always returns 1.
#pragma once

#include "projection/projection.h"

namespace latigo {

class SMerc : public Projection {
 public:
  explicit SMerc(const GeodesyParams& params) : Projection(params) {}

  const char* Code() const override { return CodeOf<SMerc>; }
  std::int32_t Kind() const override { return KindOf<SMerc>; }
  errcode XYGeo(double x, double y, double& phi, double& lambda) const override;
  errcode GeoXY(double& x, double& y, double phi, double lambda) const override;
  errcode Scale(double x, double y, double& k) const override { return UnitScale(x, y, k); }
};

}  // namespace latigo
