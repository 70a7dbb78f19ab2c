// Makes a Geodesy object from a section of a configuration file.
#pragma once

#include "frame/geodesy.h"

namespace latigo {

// Gives the object, which is the caller's, or null, and leaves the code in LastError. A null section means "Geodesy".
// Code 9 comes with an object: its geoid grid could not be loaded, and its OrthoHCorr is 0.
Geodesy* CreateFromFile(const char* fileName, const char* section) noexcept;

}  // namespace latigo
