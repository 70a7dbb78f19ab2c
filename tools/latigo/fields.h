// The fields of a line, with quotes as in RFC 4180.
#pragma once

#include <string_view>

namespace latigo::cli {

constexpr bool IsBlank(char c) {
  return c == ' ' || c == '\t';
}

constexpr std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && IsBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

// A field, as parts of its line.
struct Field {
  std::string_view bytes;  // with quotes, without the blanks around it
  std::string_view text;   // without quotes and the blanks inside them; a doubled quote remains doubled
  bool quoted = false;
};

// Where the record at the front of the text ends: at the first line feed outside quoted fields, or at the very first if
// the quotes are invalid. npos if the text ends before; but if nothing follows it (`atEnd`), its end outside quotes is
// the record's. The separator is as for FieldScanner.
std::size_t RecordEnd(std::string_view text, char separator, bool atEnd);

// Iterates over the fields of a line.
class FieldScanner {
 public:
  // The separator ends each field; if it is a blank, each run of blanks and tabs does.
  FieldScanner(std::string_view line, char separator) : left_(line), separator_(separator) {}

  // False after the last field, and for a fault. After each separator there is one more field, except after blanks.
  bool Next(Field& field);

  // Why the quotes of the last field are invalid; null if they are not.
  const char* Fault() const { return fault_; }

  // The text after the last field; for a fault from that field on.
  std::string_view Left() const { return left_; }

 private:
  bool AtEnd(char c) const { return separator_ == ' ' ? IsBlank(c) : c == separator_; }
  void SkipBlanks();
  bool TakeQuoted(Field& field);

  std::string_view left_;
  char separator_;
  bool more_ = true;  // the line has another field
  const char* fault_ = nullptr;
};

}  // namespace latigo::cli
