// Local grids that are fixed by constant data: two that follow a fitted polynomial of degree 5 or 7, and thirteen
// quadratic ones in chains. The two directions have data of their own, or the same data about the other origin, so they
// meet only nearly.
//
// x, y are the projection's coordinates, X, Y the local ones; in place.
#pragma once

#include <cstdint>

namespace latigo {

// Types 2 (degree 5) and 3 (degree 7): plain numbers, whatever the unit. They meet to 0.001 and 0.0002 units.
void PolyGridForward(std::uint32_t type, double& x, double& y);
void PolyGridInverse(std::uint32_t type, double& x, double& y);

// Types 4 to 16; `unit` is metres per grid unit.
void ChainGridForward(std::uint32_t type, double unit, double& x, double& y);
void ChainGridInverse(std::uint32_t type, double unit, double& x, double& y);

}  // namespace latigo
