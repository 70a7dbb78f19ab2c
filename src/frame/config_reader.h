// Makes a Geodesy object from a section of a configuration file.
#pragma once

#include "frame/geodesy.h"

namespace latigo {

// Returns the object, which the caller owns, or null, and sets LastError. A null section means "Geodesy". With code 9
// there is an object: its geoid grid could not be loaded, and its OrthoHCorr is 0.
Geodesy* CreateFromFile(const char* fileName, const char* section) noexcept;

}  // namespace latigo
