// Numbers from text as `atof` and `atoi` read them in the C locale, whatever locale the host program has set.
#pragma once

#include <cstdint>

namespace latigo {

// 0 if the text does not begin with a number; what follows the number does not count.
double CDouble(const char* text);

// As above; a number beyond 32 bits gives the nearest one within.
std::int32_t CInt(const char* text);

}  // namespace latigo
