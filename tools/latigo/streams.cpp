#include "streams.h"

#include <cerrno>
#include <cstring>
#include <cwchar>
#include <system_error>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>

#include "platform/platform.h"
#else
#include <sys/ioctl.h>
#include <unistd.h>
#endif

#include "error_text.h"

namespace latigo::cli {

namespace {

std::string OutputName;

}  // namespace

void SetOutputName(const std::string& name) {
  OutputName = name;
}

void ThrowSystemError(const std::string& name) {
  throw UsageError(name + ": " + std::strerror(errno));
}

void RefuseUtf16(const std::string& name, std::string_view bytes) {
  if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF") ||
      (bytes.size() > 1 && (bytes[0] == '\0') != (bytes[1] == '\0'))) {
    throw UsageError(name + ": the file is UTF-16, and only UTF-8 and plain text are read: save it as UTF-8");
  }
}

std::filesystem::path NativePath(const std::string& path) {
  return {std::u8string(path.begin(), path.end())};
}

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

std::optional<std::uint64_t> SizeOfFiles(const std::vector<std::string>& files) {
  std::uint64_t size = 0;
  for (const std::string& file : files) {
    std::error_code failure;
    const std::filesystem::path path = NativePath(file == "-" ? "/dev/stdin" : file);
    if (!std::filesystem::is_regular_file(path, failure)) {
      return {};
    }
    size += std::filesystem::file_size(path, failure);
    if (failure) {
      return {};
    }
  }
  return size;
}

std::filesystem::path ExamplesFolder() {
#if defined(_WIN32)
  wchar_t program[_MAX_PATH] = L"";
  GetModuleFileNameW(nullptr, program, _MAX_PATH);
#else
  std::error_code ignored;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ignored);
#endif
  return std::filesystem::path(program).parent_path().parent_path() / "share" / "latigo" / "examples";
}

#if defined(_WIN32)
bool IsTerminal(std::FILE* file) {
  return _isatty(_fileno(file)) != 0;
}

std::optional<std::size_t> TerminalWidth(std::FILE*) {
  return {};
}

std::string Narrow(const wchar_t* text) {
  std::string bytes(std::wcslen(text) * 3, '\0');  // at most three bytes for a unit of UTF-16
  bytes.resize(
      static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(std::wcslen(text)), bytes.data(),
                                                   static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

std::FILE* OpenForReading(const std::string& path) {
  std::wstring wide(path.size() + 1, L'\0');  // at most as many units as bytes, and NUL
  MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
  return _wfopen(wide.c_str(), L"rb");
}
#else
bool IsTerminal(std::FILE* file) {
  return isatty(fileno(file)) != 0;
}

std::optional<std::size_t> TerminalWidth(std::FILE* file) {
  winsize size{};
  if (ioctl(fileno(file), TIOCGWINSZ, &size) != 0 || size.ws_col == 0) {
    return {};
  }
  return size.ws_col;
}

std::FILE* OpenForReading(const std::string& path) {
  return std::fopen(path.c_str(), "rb");
}
#endif

void PrepareStreams() {
#if defined(_WIN32)
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
#endif
}

void FlushOutput() {
  if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
    ThrowSystemError(OutputName.empty() ? "standard output" : OutputName);
  }
}

void Print(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  FlushOutput();
}

}  // namespace latigo::cli
