// The install directory of the suite, which contains the grid files.
#pragma once

namespace latigo {

// Finds the install directory: by the registry, by the environment variable TWI_BATHYX, or as the directory of the host
// program. It is searched once and kept, so the first call should not run concurrently with another. `buffer` receives
// a copy; it has 256 bytes, or is null.
const char* GetInstallDir(char* buffer);

// Forms the path of a grid file: its base name (all after the last backslash) in the folder "datum" of the install
// directory. Returns false and an empty path if it has more than 255 characters or, except on Windows, if the name
// contains a slash: grid files are in that folder, not below or above it.
bool GridFilePath(const char* value, char (&path)[256]);

}  // namespace latigo
