#include "fields.h"

#include <algorithm>

namespace latigo::cli {

namespace {

// The closing quote of a quoted field at the front of the text, which a doubled quote is not; npos if there is none.
std::size_t ClosingQuote(std::string_view text) {
  std::size_t quote = text.find('"', 1);
  while (quote != std::string_view::npos && text.substr(quote + 1).starts_with('"')) {
    quote = text.find('"', quote + 2);
  }
  return quote;
}

}  // namespace

std::size_t RecordEnd(std::string_view text, char separator, bool atEnd) {
  const std::string_view blanks = separator == '\t' ? " " : " \t";
  bool begins = true;  // a field
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == '\n') {
      return at;
    }
    if (!begins || text[at] != '"') {
      const bool blank = blanks.find(text[at]) != std::string_view::npos;
      begins = text[at] == separator || (blank && (begins || separator == ' '));
      continue;
    }
    const std::size_t length = ClosingQuote(text.substr(at));
    if (length == std::string_view::npos) {
      return length;
    }
    const std::size_t after = std::min(text.find_first_not_of(blanks, at + length + 1), text.size());
    const std::string_view next = text.substr(after);
    if (!next.empty() && next.front() != separator && next.front() != '\n' && !next.starts_with("\r\n") &&
        (separator != ' ' || after == at + length + 1)) {
      return text.find('\n');
    }
    at = after - 1;
  }
  return atEnd ? text.size() : std::string_view::npos;
}

void FieldScanner::SkipBlanks() {
  const bool tabs = separator_ != '\t';
  while (!left_.empty() && (left_.front() == ' ' || (tabs && left_.front() == '\t'))) {
    left_.remove_prefix(1);
  }
}

// Takes a field from its opening quote to the closing one.
bool FieldScanner::TakeQuoted(Field& field) {
  const std::size_t quote = ClosingQuote(left_);
  if (quote == std::string_view::npos) {
    fault_ = "the quote at the beginning of a field is not closed";
    return false;
  }
  const std::string_view whole = left_;
  field = {left_.substr(0, quote + 1), Trimmed(left_.substr(1, quote - 1)), true};
  left_.remove_prefix(quote + 1);
  const bool blank = !left_.empty() && IsBlank(left_.front());
  SkipBlanks();
  if (!left_.empty() && left_.front() != separator_ && !(separator_ == ' ' && blank)) {
    fault_ = "text after the closing quote of a field";
    left_ = whole;
    return false;
  }
  return true;
}

bool FieldScanner::Next(Field& field) {
  SkipBlanks();
  if (!more_ || (separator_ == ' ' && left_.empty())) {
    return false;
  }
  if (left_.starts_with('"')) {
    if (!TakeQuoted(field)) {
      return false;
    }
  } else {
    const auto* const end = std::find_if(left_.begin(), left_.end(), [this](char c) { return AtEnd(c); });
    field.bytes = field.text = Trimmed({left_.begin(), end});
    field.quoted = false;
    left_ = {end, left_.end()};
  }
  more_ = !left_.empty();
  if (more_ && separator_ != ' ') {
    left_.remove_prefix(1);
  }
  return true;
}

}  // namespace latigo::cli
