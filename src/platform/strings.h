// The string table's texts.
#pragma once

#include "platform/platform.h"

namespace latigo {

// Copies the text of a string resource, in Windows-1252 for every code page of the process, cut to size - 1
// characters, and ends it with NUL. Returns the number of characters copied, 0 if no text has the id.
int LoadText(HMODULE module, UINT id, char* buffer, int size);

}  // namespace latigo
