// Lines in and out through large buffers; nothing is allocated per line.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "angle.h"

namespace latigo::cli {

class LineReader {
 public:
  // Reads a file, or standard input for "-". Throws UsageError if the file cannot be read.
  explicit LineReader(const std::string& path);
  ~LineReader();
  LineReader(const LineReader&) = delete;
  LineReader& operator=(const LineReader&) = delete;

  // Gives the next line without its end (LF or CRLF), valid until the next call; false at the end of the file. Of a
  // line beyond the limit of length only the beginning is given, and TooLong says so.
  bool Next(std::string_view& line);

  bool TooLong() const { return tooLong_; }
  std::size_t Number() const { return number_; }  // of the line, from 1
  const std::string& Name() const { return name_; }

 private:
  bool Fill();
  void SkipLine();

  std::string name_;
  std::FILE* file_;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;  // what is not yet given lies from begin_ to end_
  std::size_t end_ = 0;
  std::size_t number_ = 0;
  bool tooLong_ = false;
};

// Standard output. Throws UsageError if it cannot be written.
class Writer {
 public:
  Writer() { buffer_.reserve(Size); }

  void Text(std::string_view text);
  void Char(char c) { Text({&c, 1}); }
  // A number with so many digits behind the point; never "-0".
  void Number(double value, int precision);
  void Dms(double degrees, Axis axis, int precision);
  void Flush();

 private:
  static constexpr std::size_t Size = 1 << 16;
  std::string buffer_;
};

}  // namespace latigo::cli
