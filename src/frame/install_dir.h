// The install directory of the suite, below which the grid files lie.
#pragma once

namespace latigo {

// Finds the install directory: by the registry, by the environment variable TWI_BATHYX, or as the directory of the host
// program. It is looked for once and then kept, so the first call ought not to run beside another. A buffer, which may
// be null and has 256 bytes, receives a copy.
const char* GetInstallDir(char* buffer);

// Forms the path of a grid file: its name, which is what follows the last backslash, in the folder "datum" of the
// install directory. Gives false and an empty path if it has more than 255 characters or, elsewhere than on Windows, if
// the name has a slash: grid files lie in that folder and in none below or above it.
bool GridFilePath(const char* value, char (&path)[256]);

}  // namespace latigo
