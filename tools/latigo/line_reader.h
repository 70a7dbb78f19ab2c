// Lines of a file in large blocks; nothing is allocated per line.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace latigo::cli {

// Complete lines of a file. The last one may lack its line end.
struct Block {
  std::string bytes;
  std::size_t firstLine = 1;        // number of the first line in the file
  bool afterCrlf = false;           // the line before the block ends in CRLF
  bool cut = false;                 // the block is the beginning of one overlong line
  std::vector<std::size_t> inside;  // places of the line feeds inside quoted fields, which end no line
};

// Removes the next line from the front of the text and returns it and its end (LF, CRLF, or nothing at the end of the
// text); false if the text is empty.
bool NextLine(std::string_view& text, std::string_view& line, std::string_view& end);

// Removes the next line from the front of the text and returns it without its end (LF or CRLF); false if the text is
// empty.
bool NextLine(std::string_view& text, std::string_view& line);

// Whether the text has a carriage return that is neither at its end nor before a line feed, as in files whose lines end
// with carriage returns only; and the message about it.
bool HasReturnInside(std::string_view text);
extern const char* const ReturnInside;

// Iterates over the lines of a block. The number of a line with line feeds inside is that of its first part.
class BlockLines {
 public:
  explicit BlockLines(const Block& block)
      : block_(block), left_(block.bytes), number_(block.firstLine), following_(block.firstLine) {}

  // As NextLine.
  bool Next(std::string_view& line, std::string_view& end);

  std::size_t Number() const { return number_; }        // of the line
  std::size_t Following() const { return following_; }  // of the line after it

 private:
  const Block& block_;
  std::string_view left_;
  std::size_t number_;
  std::size_t following_;
  std::size_t inside_ = 0;  // of block_.inside, those passed
};

class BlockReader {
 public:
  // Reads a file, or standard input for "-". Throws UsageError if the file cannot be read.
  explicit BlockReader(const std::string& path);

  // Returns the available text as soon as it has a complete line; false at the end of the file. A UTF-8 mark before the
  // first line is skipped.
  bool Next(Block& block);

  const std::string& Name() const { return name_; }

 private:
  struct CloseFile {
    void operator()(std::FILE* file) const;
  };

  // Appends what can be read without blocking again; false at the end of the file.
  bool ReadMore(std::string& bytes);
  void SkipLine(std::string& bytes);
  bool NextBlock(Block& block);

  std::string name_;
  std::unique_ptr<std::FILE, CloseFile> file_;
  std::string rest_;  // the beginning of a line
  std::size_t nextLine_ = 1;
  bool afterCrlf_ = false;
};

}  // namespace latigo::cli
