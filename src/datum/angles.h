// The constants of angles, as the doubles that all formulas share.
#pragma once

namespace latigo {

inline constexpr double Pi = 3.141592653589793;
inline constexpr double HalfPi = 1.5707963267948966;
inline constexpr double TwoPi = 6.283185307179586;

}  // namespace latigo
