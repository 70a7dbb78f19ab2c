// Local grids of constant data: two fitted polynomials of degree 5 and 7, and thirteen quadratic ones in chains. The
// inverse has coefficients of its own, or uses the same ones about the other origin, so a round trip does not close
// exactly.
//
// x, y are the projection's coordinates, X, Y the local ones; in place.
#pragma once

#include <cstdint>

namespace latigo {

// Types 2 (degree 5) and 3 (degree 7), which ignore the unit. The round-trip error is 0.001 and 0.0002 units.
//     forward   X = -P(x - x0, y - y0)     Y = P'(x - x0, y - y0)
//     inverse   x = p(-X - X0, Y - Y0)     y = p'(-X - X0, Y - Y0)
void PolyGridForward(std::uint32_t type, double& x, double& y);
void PolyGridInverse(std::uint32_t type, double& x, double& y);

// Types 4 to 16; `unit` is metres per grid unit. In chains, with u = (y - OrigY) / 10000 and v = (x - OrigX) / 10000:
//     forward   X = x - OrigX + OutX - P(u, v)     Y = y - OrigY + OutY - P'(u, v)
// and the inverse adds the same polynomials, evaluated for Y - OutY and X - OutX.
void ChainGridForward(std::uint32_t type, double unit, double& x, double& y);
void ChainGridInverse(std::uint32_t type, double unit, double& x, double& y);

}  // namespace latigo
