// The picture of a projection: closure error and point scale factor in its area.
#pragma once

#include <string>

#include "closure.h"

namespace latigo::page {

std::string Picture(const System& system, const Grid& grid);

}  // namespace latigo::page
