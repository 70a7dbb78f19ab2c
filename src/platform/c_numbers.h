// Numbers from text, as read by `atof` and `atoi` in the C locale, independent of the host program's locale.
#pragma once

#include <cstdint>

namespace latigo {

// 0 if the text does not begin with a number; text after the number is ignored.
double CDouble(const char* text);

// As above; a number outside 32 bits becomes the nearest limit.
std::int32_t CInt(const char* text);

}  // namespace latigo
