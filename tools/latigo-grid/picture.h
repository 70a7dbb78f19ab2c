// A picture of a surface: the value of a geoid, the length of a shift, from low to high.
#pragma once

#include <string>

#include "surface.h"

namespace latigo::grids {

// Lines of characters for a terminal, from the north, with the range below them.
std::string TerminalPicture(const Surface& surface);

std::string SvgPicture(const Surface& surface, const std::string& title);

}  // namespace latigo::grids
