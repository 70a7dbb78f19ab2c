#include "adjust/poly_grids.h"

#include "adjust/poly_tables.h"

namespace latigo {

namespace {

constexpr double Chain = 20.1167651216;  // metres
constexpr double ChainScale = 10000.0;   // chains per unit of the quadratic grids' arguments

// P(u, v) = sum of c[k, j] u^k v^j over k + j <= n, by Horner's method in both variables, from the end of the triangle
// to its start.
double PolyEval(const double* c, int n, double u, double v) {
  const double* next = c + (n + 1) * (n + 2) / 2;
  double r = *--next;
  for (int m = 0; m < n; ++m) {
    double q = *--next;
    for (int j = 0; j <= m; ++j) {
      q = q * v + *--next;
    }
    r = q + r * u;
  }
  return r;
}

const PolyGrid& PolyGridOf(std::uint32_t type) {
  return type == 2 ? Poly5 : Poly7;
}

}  // namespace

void PolyGridForward(std::uint32_t type, double& x, double& y) {
  const auto& [degree, forward, inverse] = PolyGridOf(type);
  const double dx = x - forward.x0;
  const double dy = y - forward.y0;
  x = -PolyEval(forward.x, degree, dx, dy);  // the polynomial is that of -X
  y = PolyEval(forward.y, degree, dx, dy);
}

void PolyGridInverse(std::uint32_t type, double& x, double& y) {
  const auto& [degree, forward, inverse] = PolyGridOf(type);
  const double dx = -x - inverse.x0;
  const double dy = y - inverse.y0;
  x = PolyEval(inverse.x, degree, dx, dy);
  y = PolyEval(inverse.y, degree, dx, dy);
}

// The first argument u of the quadratic polynomials is the difference in y.
void ChainGridForward(std::uint32_t type, double unit, double& x, double& y) {
  const ChainGridRow& row = ChainGridRows[type - FirstChainGrid];
  const double dx = unit * x / Chain - row.OrigX;
  const double dy = unit * y / Chain - row.OrigY;
  const double u = dy / ChainScale;
  const double v = dx / ChainScale;
  x = ((dx + row.OutX) - PolyEval(row.CoefX, 2, u, v)) * Chain / unit;
  y = ((dy + row.OutY) - PolyEval(row.CoefY, 2, u, v)) * Chain / unit;
}

void ChainGridInverse(std::uint32_t type, double unit, double& x, double& y) {
  const ChainGridRow& row = ChainGridRows[type - FirstChainGrid];
  const double dx = unit * x / Chain - row.OutX;
  const double dy = unit * y / Chain - row.OutY;
  const double u = dy / ChainScale;
  const double v = dx / ChainScale;
  x = ((dx + row.OrigX) + PolyEval(row.CoefX, 2, u, v)) * Chain / unit;
  y = ((dy + row.OrigY) + PolyEval(row.CoefY, 2, u, v)) * Chain / unit;
}

}  // namespace latigo
