// The length units that have names.
#pragma once

#include <cstdint>

namespace latigo {

// Returns the id, 1 to 15, of the unit with exactly this length in metres, or 0 if there is none.
std::int32_t FindUnit(double metresPerUnit);

}  // namespace latigo
