// The length units that have names.
#pragma once

#include <cstdint>

namespace latigo {

// Gives the id, 1 to 15, of the unit with exactly so many metres, or 0 if no unit has them.
std::int32_t FindUnit(double metresPerUnit);

}  // namespace latigo
