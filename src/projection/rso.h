// The rectified skew orthomorphic: the skew frame is rotated by the azimuth of the central line at the aposphere's
// equator. Formulas, domain and failures: see ObliqueMercator.
#pragma once

#include "projection/oblique_mercator.h"

namespace latigo {

class RSO : public ObliqueMercator {
 public:
  explicit RSO(const GeodesyParams& params) : ObliqueMercator(params), Omega(SinCosOf(Gamma0)) {}

  const char* Code() const override { return CodeOf<RSO>; }
  std::int32_t Kind() const override { return KindOf<RSO>; }
  void UVXY(double u, double v, double& x, double& y) const override { RotateToGrid(Omega, u, v, x, y); }
  void XYUV(double x, double y, double& u, double& v) const override { RotateToSkew(Omega, x, y, u, v); }

 private:
  const SinCos Omega;
};

}  // namespace latigo
