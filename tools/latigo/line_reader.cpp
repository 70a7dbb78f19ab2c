#include "line_reader.h"

#include <algorithm>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

#include "error_text.h"
#include "streams.h"

namespace latigo::cli {

namespace {

constexpr std::size_t ReadSize = 1 << 18;
constexpr std::size_t LongestLine = 1 << 20;

// Reads the available bytes without waiting for more; 0 at the end, negative for a failure.
long ReadSome(std::FILE* file, char* buffer, std::size_t size) {
#if defined(_WIN32)
  return _read(_fileno(file), buffer, static_cast<unsigned>(size));
#else
  return read(fileno(file), buffer, size);
#endif
}

}  // namespace

bool NextLine(std::string_view& text, std::string_view& line, std::string_view& end) {
  if (text.empty()) {
    return false;
  }
  const std::size_t feed = std::min(text.find('\n'), text.size());
  const std::size_t length = feed > 0 && text[feed - 1] == '\r' ? feed - 1 : feed;
  const std::size_t next = std::min(feed + 1, text.size());
  line = text.substr(0, length);
  end = feed < text.size() ? text.substr(length, next - length) : std::string_view();
  text.remove_prefix(next);
  return true;
}

bool NextLine(std::string_view& text, std::string_view& line) {
  std::string_view end;
  return NextLine(text, line, end);
}

bool HasReturnInside(std::string_view text) {
  for (std::size_t at = text.find('\r'); at < text.size(); at = text.find('\r', at + 1)) {
    if (at + 1 < text.size() && text[at + 1] != '\n') {
      return true;
    }
  }
  return false;
}

const char* const ReturnInside = "a carriage return inside the line: its end must be LF or CRLF";

bool BlockLines::Next(std::string_view& line, std::string_view& end) {
  number_ = following_;
  if (!NextLine(left_, line, end)) {
    return false;
  }
  ++following_;
  const char* const begin = block_.bytes.data();
  for (; inside_ < block_.inside.size() && begin + block_.inside[inside_] < left_.data(); ++inside_) {
    std::string_view part;
    NextLine(left_, part, end);
    line = {line.data(), part.data() + part.size()};
    ++following_;
  }
  return true;
}

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

// Leaves the text after the line in `bytes`.
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
  // The first line may be a line feed only, whose zero is in the next.
  if (block.firstLine == 1) {
    RefuseUtf16(name_, block.bytes.substr(0, 2) + rest_.substr(0, 1));
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
  block.afterCrlf = afterCrlf_;
  block.cut = false;
  block.inside.clear();
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
  afterCrlf_ = block.bytes.ends_with("\r\n");
  nextLine_ += static_cast<std::size_t>(std::count(block.bytes.begin(), block.bytes.end(), '\n'));
  return true;
}

}  // namespace latigo::cli
