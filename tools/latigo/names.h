// Names and numbers for people.
#pragma once

#include <cstdint>
#include <string>

namespace latigo::cli {

// The name of a projection in words; empty for an unknown kind.
const char* ProjectionName(std::int32_t kind);

// A number with as many digits as it needs.
std::string ShortNumber(double value);

}  // namespace latigo::cli
