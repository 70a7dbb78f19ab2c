// Files, standard output and arguments, on Windows too.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace latigo::cli {

// Throws UsageError with the name and what errno means.
[[noreturn]] void ThrowSystemError(const std::string& name);

// Opens a file by its name in UTF-8; null for a failure, with errno.
std::FILE* OpenForReading(const std::string& path);

#if defined(_WIN32)
// UTF-16 to UTF-8.
std::string Narrow(const wchar_t* text);
#endif

// On Windows: the bytes of standard input and output pass as they are, and a console takes the output as UTF-8.
void PrepareStreams();

// Writes what waits in the buffer of standard output. Throws UsageError if that or an earlier write failed.
void FlushOutput();

// Writes a text to standard output at once. Throws UsageError if that cannot be done.
void Print(std::string_view text);

}  // namespace latigo::cli
