#include "lines.h"

#include <cerrno>
#include <charconv>
#include <cstring>

#include "error_text.h"

namespace latigo::cli {

namespace {

constexpr std::size_t ReadSize = 1 << 16;
constexpr std::size_t LongestLine = 1 << 20;

[[noreturn]] void ThrowSystemError(const std::string& name) {
  throw UsageError(name + ": " + std::strerror(errno));
}

}  // namespace

LineReader::LineReader(const std::string& path)
    : name_(path == "-" ? "standard input" : path),
      file_(path == "-" ? stdin : std::fopen(path.c_str(), "rb")),
      buffer_(ReadSize) {
  if (file_ == nullptr) {
    ThrowSystemError(name_);
  }
}

LineReader::~LineReader() {
  if (file_ != stdin) {
    std::fclose(file_);
  }
}

// Reads on behind what is there; false if there is nothing more.
bool LineReader::Fill() {
  if (begin_ > 0) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == buffer_.size()) {
    buffer_.resize(2 * buffer_.size());
  }
  errno = 0;
  const std::size_t more = std::fread(buffer_.data() + end_, 1, buffer_.size() - end_, file_);
  if (more == 0 && std::ferror(file_) != 0) {
    ThrowSystemError(name_);
  }
  end_ += more;
  return more > 0;
}

void LineReader::SkipLine() {
  for (;;) {
    if (const void* feed = std::memchr(buffer_.data() + begin_, '\n', end_ - begin_); feed != nullptr) {
      begin_ = static_cast<std::size_t>(static_cast<const char*>(feed) - buffer_.data()) + 1;
      return;
    }
    begin_ = end_;
    if (!Fill()) {
      return;
    }
  }
}

bool LineReader::Next(std::string_view& line) {
  if (tooLong_) {
    tooLong_ = false;
    SkipLine();
  }
  std::size_t searched = 0;
  for (;;) {
    const char* const start = buffer_.data() + begin_;
    const std::size_t length = end_ - begin_;
    if (const void* feed = std::memchr(start + searched, '\n', length - searched); feed != nullptr) {
      line = {start, static_cast<std::size_t>(static_cast<const char*>(feed) - start)};
      begin_ += line.size() + 1;
      break;
    }
    searched = length;
    if (length >= LongestLine) {
      tooLong_ = true;
      line = {start, length};
      begin_ = end_;
      break;
    }
    if (!Fill()) {
      if (length == 0) {
        return false;
      }
      line = {buffer_.data() + begin_, length};
      begin_ = end_;
      break;
    }
  }
  if (line.ends_with('\r')) {
    line.remove_suffix(1);
  }
  ++number_;
  return true;
}

void Writer::Text(std::string_view text) {
  if (buffer_.size() + text.size() > Size) {
    Flush();
  }
  if (text.size() > Size) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size()) {
      ThrowSystemError("standard output");
    }
    return;
  }
  buffer_.append(text);
}

void Writer::Number(double value, int precision) {
  char text[400];  // the largest double has 309 digits before the point
  const char* const end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, precision).ptr;
  std::string_view number(text, static_cast<std::size_t>(end - text));
  if (number.starts_with('-') && number.find_first_not_of("-0.") == std::string_view::npos) {
    number.remove_prefix(1);
  }
  Text(number);
}

void Writer::Dms(double degrees, Axis axis, int precision) {
  char text[64];
  const char* const end = WriteDms(text, degrees, axis, precision);
  Text({text, static_cast<std::size_t>(end - text)});
}

void Writer::Flush() {
  if (std::fwrite(buffer_.data(), 1, buffer_.size(), stdout) != buffer_.size() || std::fflush(stdout) != 0) {
    ThrowSystemError("standard output");
  }
  buffer_.clear();
}

}  // namespace latigo::cli
