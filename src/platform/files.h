// Binary files by path and by position, where the standard library leaves the width of a position open.
#pragma once

#include <cstdint>
#include <cstdio>

namespace latigo {

// Opens a file for reading in binary, without a buffer of its own: a read takes just the bytes that it gives. Elsewhere
// than on Windows backslashes in the path are taken as slashes. Gives null if the file cannot be opened.
std::FILE* OpenForReading(const char* path);

// Removes a file; the path is taken as above.
void RemoveFile(const char* path);

// Moves to a position in bytes from the start of the file. Gives false if that cannot be done.
bool SeekTo(std::FILE* file, std::int64_t position);

}  // namespace latigo
