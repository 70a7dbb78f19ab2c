// What the two builds are compared at: coordinate systems, and the values at which a formula or a test changes course.
#pragma once

#include <latigo/latigo.h>

#include <random>
#include <string>
#include <vector>

namespace same_digits {

using Random = std::mt19937_64;

double Uniform(Random& random, double low, double high);

// A record of one kind on an ellipsoid of the table or a made-up one, with every parameter that the kind reads drawn at
// random, or at a special value: origins on the equator and at the poles, equal parallels, azimuths of 0 and 90
// degrees.
GeodesyParams RandomRecord(Random& random, std::int32_t kind);

// Latitudes, longitudes and plane coordinates of a system where signs, quadrants, limits and neighbours by one unit in
// the last place are: also zeros of both signs, the smallest and the largest doubles, infinities and NaN.
struct Specials {
  std::vector<double> latitudes, longitudes, x, y;
};
Specials SpecialsOf(const GeodesyParams& params);

}  // namespace same_digits
