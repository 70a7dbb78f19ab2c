// Chooses the lattice that a tolerance needs.
//
// The library blends with S(t) = t^2 (3 - 2t) of the fraction t, which differs from a straight line by up to
// sqrt(3)/18 = 0.0962 of the difference between two nodes. No choice of the nodes' values changes that; k times denser
// nodes make it k times smaller.
#pragma once

#include <cstdint>
#include <optional>

#include "field.h"
#include "lattice.h"

namespace latigo::grids {

inline constexpr double BlendDefect = 0.0962250448649376;  // sqrt(3)/18

struct Plan {
  Lattice lattice;
  double bound = 0;      // metres; what the library's values may differ from the source's
  bool aligned = false;  // the source's nodes are nodes of the lattice
};

// The smallest file within the tolerance (metres). Refuses a tolerance that takes more than maxBytes, and says which
// one does not. Without an area the whole source is taken.
Plan ChoosePlan(const Field& field, const std::optional<Area>& area, double tolerance, std::int64_t maxBytes);

// The largest area, from node to node of the coarsest layer, in which every node has a value.
Area LargestWithoutGaps(const Field& field, const Area& area);

}  // namespace latigo::grids
