#include "lines.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <iterator>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>

#include "platform/platform.h"
#else
#include <unistd.h>
#endif

#include "error_text.h"

namespace latigo::cli {

namespace {

constexpr std::size_t ReadSize = 1 << 18;
constexpr std::size_t LongestLine = 1 << 20;

[[noreturn]] void ThrowSystemError(const std::string& name) {
  throw UsageError(name + ": " + std::strerror(errno));
}

// Reads what is there, without waiting for more; 0 at the end, negative for a failure.
long ReadSome(std::FILE* file, char* buffer, std::size_t size) {
#if defined(_WIN32)
  return _read(_fileno(file), buffer, static_cast<unsigned>(size));
#else
  return read(fileno(file), buffer, size);
#endif
}

}  // namespace

bool NextLine(std::string_view& text, std::string_view& line) {
  if (text.empty()) {
    return false;
  }
  const std::size_t feed = std::min(text.find('\n'), text.size());
  line = text.substr(0, feed);
  text.remove_prefix(std::min(feed + 1, text.size()));
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  return true;
}

#if defined(_WIN32)
std::string Narrow(const wchar_t* text) {
  std::string bytes(std::wcslen(text) * 3, '\0');  // a unit of UTF-16 takes three bytes at most
  bytes.resize(
      static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text, static_cast<int>(std::wcslen(text)), bytes.data(),
                                                   static_cast<int>(bytes.size()), nullptr, nullptr)));
  return bytes;
}

std::FILE* OpenForReading(const std::string& path) {
  std::wstring wide(path.size() + 1, L'\0');  // never more units than bytes, and the end
  MultiByteToWideChar(CP_UTF8, 0, path.c_str(), -1, wide.data(), static_cast<int>(wide.size()));
  return _wfopen(wide.c_str(), L"rb");
}
#else
std::FILE* OpenForReading(const std::string& path) {
  return std::fopen(path.c_str(), "rb");
}
#endif

void BlockReader::CloseFile::operator()(std::FILE* file) const {
  if (file != stdin) {
    std::fclose(file);
  }
}

BlockReader::BlockReader(const std::string& path)
    : name_(path == "-" ? "standard input" : path), file_(path == "-" ? stdin : OpenForReading(path)) {
  if (!file_) {
    ThrowSystemError(name_);
  }
}

bool BlockReader::ReadMore(std::string& bytes) {
  const std::size_t length = bytes.size();
  bytes.resize(length + ReadSize);
  const long more = ReadSome(file_.get(), bytes.data() + length, ReadSize);
  if (more < 0) {
    ThrowSystemError(name_);
  }
  bytes.resize(length + static_cast<std::size_t>(more));
  return more > 0;
}

// Leaves what follows the line in `bytes`.
void BlockReader::SkipLine(std::string& bytes) {
  do {
    bytes.clear();
    if (!ReadMore(bytes)) {
      return;
    }
  } while (bytes.find('\n') == std::string::npos);
  bytes.erase(0, bytes.find('\n') + 1);
}

bool BlockReader::Next(Block& block) {
  if (!NextBlock(block)) {
    return false;
  }
  if (block.firstLine == 1 && block.bytes.starts_with("\xEF\xBB\xBF")) {
    block.bytes.erase(0, 3);
  }
  return true;
}

bool BlockReader::NextBlock(Block& block) {
  block.bytes = std::move(rest_);
  rest_.clear();
  block.firstLine = nextLine_;
  block.cut = false;
  std::size_t feed = block.bytes.rfind('\n');
  for (; feed == std::string::npos; feed = block.bytes.rfind('\n')) {
    if (block.bytes.size() >= LongestLine) {
      block.cut = true;
      SkipLine(rest_);
      ++nextLine_;
      return true;
    }
    if (!ReadMore(block.bytes)) {
      return !block.bytes.empty();
    }
  }
  rest_.assign(block.bytes, feed + 1);
  block.bytes.resize(feed + 1);
  nextLine_ += static_cast<std::size_t>(std::count(block.bytes.begin(), block.bytes.end(), '\n'));
  return true;
}

void Writer::Number(double value, int precision) {
  if (ShortNumber(value, precision)) {
    return;
  }
  char text[400];  // the largest double has 309 digits before the point
  const char* const end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, precision).ptr;
  std::string_view number(text, static_cast<std::size_t>(end - text));
  if (number.starts_with('-') && number.find_first_not_of("-0.") == std::string_view::npos) {
    number.remove_prefix(1);
  }
  Text(number);
}

// By a whole number of units of the last digit, which is right unless the value lies too near to the middle of two.
bool Writer::ShortNumber(double value, int precision) {
  constexpr double PowersOfTen[] = {1, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
  if (precision >= static_cast<int>(std::size(PowersOfTen))) {
    return false;
  }
  const double scaled = std::fabs(value) * PowersOfTen[precision];
  const double below = std::floor(scaled);
  const double fraction = scaled - below;
  if (!(scaled < 1e15 && std::fabs(fraction - 0.5) > 1e-15 * scaled)) {
    return false;
  }
  const auto units = static_cast<std::uint64_t>(below) + (fraction > 0.5 ? 1 : 0);
  char digits[32] = "0000000000000";  // so many zeros may stand in front of the units, which are up to 15 digits
  const auto whole = static_cast<std::size_t>(precision) + 1;
  char* first = digits + whole;
  const char* const end = std::to_chars(first, digits + sizeof digits, units).ptr;
  const auto length = static_cast<std::size_t>(end - first);
  const char* const start = length < whole ? end - whole : first;
  const char* const point = end - precision;
  if (value < 0 && units != 0) {
    Char('-');
  }
  Text({start, point});
  if (precision > 0) {
    Char('.');
    Text({point, end});
  }
  return true;
}

void Writer::Dms(double degrees, Axis axis, int precision) {
  char text[64];
  const char* const end = WriteDms(text, degrees, axis, precision);
  Text({text, static_cast<std::size_t>(end - text)});
}

void PrepareStreams() {
#if defined(_WIN32)
  _setmode(_fileno(stdin), _O_BINARY);
  _setmode(_fileno(stdout), _O_BINARY);
  SetConsoleOutputCP(CP_UTF8);
#endif
}

void Print(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0) {
    ThrowSystemError("standard output");
  }
}

}  // namespace latigo::cli
