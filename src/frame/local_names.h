// Names of units and axes in words, in three languages.
#pragma once

#include <cstdint>

#include "frame/geodesy.h"
#include "platform/platform.h"

namespace latigo {

// The library's own module, which holds the string table; set while it loads.
extern HMODULE ModuleHandle;

// Gives 0, or code 12 if the request is unknown or no text exists. A text that the language lacks is given in English.
std::int32_t GetLocalName(const Geodesy& object, std::int32_t request, const char* language, char* buffer,
                          std::int32_t size);

}  // namespace latigo
