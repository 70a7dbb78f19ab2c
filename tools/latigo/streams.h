// Files, standard output and arguments, also on Windows.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace latigo::cli {

// Throws UsageError with the name and the text of errno.
[[noreturn]] void ThrowSystemError(const std::string& name);

// A path of the system from UTF-8, and the reverse.
std::filesystem::path NativePath(const std::string& path);
std::string Utf8(const std::filesystem::path& path);

// The folder of the installed examples, found from the program's own place.
std::filesystem::path ExamplesFolder();

// Opens a file by its name in UTF-8; null for a failure, with errno.
std::FILE* OpenForReading(const std::string& path);

// Throws UsageError if a file begins as a text in UTF-16: with its mark, or with NUL as a byte of its first character.
void RefuseUtf16(const std::string& name, std::string_view bytes);

bool IsTerminal(std::FILE* file);

// The characters in a row of the terminal; empty if it does not say.
std::optional<std::size_t> TerminalWidth(std::FILE* file);

// The bytes of all files, standard input for "-"; empty if one is not a regular file.
std::optional<std::uint64_t> SizeOfFiles(const std::vector<std::string>& files);

#if defined(_WIN32)
// UTF-16 to UTF-8.
std::string Narrow(const wchar_t* text);
#endif

// On Windows: standard input and output are binary, and a console shows the output as UTF-8.
void PrepareStreams();

// The name of standard output in messages, if it is a file of the program; empty if it is not.
void SetOutputName(const std::string& name);

// Flushes standard output. Throws UsageError if this or an earlier write failed.
void FlushOutput();

// Writes a text to standard output and flushes it. Throws UsageError if this fails.
void Print(std::string_view text);

}  // namespace latigo::cli
