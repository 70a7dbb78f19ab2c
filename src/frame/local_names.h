// Names of units and axes in words, in three languages.
#pragma once

#include <cstdint>

#include "frame/geodesy.h"
#include "platform/platform.h"

namespace latigo {

// The module that holds the string table: the library's own; set while it loads.
extern HMODULE ModuleHandle;

// Returns 0, or code 12 if the request is unknown or no text exists. Texts that the language lacks are in English.
std::int32_t GetLocalName(const Geodesy& object, std::int32_t request, const char* language, char* buffer,
                          std::int32_t size);

}  // namespace latigo
