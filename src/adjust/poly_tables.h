// The constant data of the polynomial local grids.
//
// A polynomial of degree n is a triangle of coefficients c[k, j] of u^k v^j, by rows: k from 0 to n, in each j from 0
// to n - k. The first element is the constant term, the last one the coefficient of u^n.
#pragma once

#include <cstdint>

namespace latigo {

// One direction of a grid: the offsets subtracted from the two inputs, and the triangles of the two outputs.
struct PolyDirection {
  double x0, y0;
  const double* x;
  const double* y;
};

struct PolyGrid {
  int degree;
  PolyDirection forward;
  PolyDirection inverse;
};

extern const PolyGrid Poly5;
extern const PolyGrid Poly7;

// Origins in the projection's grid and in the local grid, and triangles of degree 2; chains.
struct ChainGridRow {
  double OutY, OutX, OrigY, OrigX;
  double CoefY[6];
  double CoefX[6];
};

inline constexpr std::uint32_t FirstChainGrid = 4;  // the type of the first row
inline constexpr std::uint32_t LastChainGrid = 16;
extern const ChainGridRow ChainGridRows[LastChainGrid - FirstChainGrid + 1];

}  // namespace latigo
