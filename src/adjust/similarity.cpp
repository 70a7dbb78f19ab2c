#include "adjust/similarity.h"

#include <cmath>

namespace latigo {

namespace {

void Mirror(const Adjustment& adjustment, double& x, double& y) {
  if ((adjustment.AdjustType & LATIGO_REVERSE_X) != 0) {
    x = -x;
  }
  if ((adjustment.AdjustType & LATIGO_REVERSE_Y) != 0) {
    y = -y;
  }
}

}  // namespace

Similarity::Similarity(const Adjustment& adjustment)
    : p(adjustment.AdjustScale * std::sin(adjustment.AdjustRotation)),
      q(adjustment.AdjustScale * std::cos(adjustment.AdjustRotation)),
      invP(std::sin(-adjustment.AdjustRotation) / adjustment.AdjustScale),
      invQ(std::cos(-adjustment.AdjustRotation) / adjustment.AdjustScale) {}

void Similarity::Forward(const Adjustment& adjustment, double& x, double& y) const {
  const double dx = x - adjustment.AdjustOrigX;
  const double dy = y - adjustment.AdjustOrigY;
  x = q * dx + p * dy + adjustment.AdjustX;
  y = q * dy - p * dx + adjustment.AdjustY;
  Mirror(adjustment, x, y);
}

void Similarity::Inverse(const Adjustment& adjustment, double& x, double& y) const {
  Mirror(adjustment, x, y);
  const double dX = x - adjustment.AdjustX;
  const double dY = y - adjustment.AdjustY;
  x = invQ * dX + invP * dY + adjustment.AdjustOrigX;
  y = invQ * dY - invP * dX + adjustment.AdjustOrigY;
}

}  // namespace latigo
