#include "fields.h"

#include <algorithm>

namespace latigo::cli {

void FieldScanner::SkipBlanks() {
  const bool tabs = separator_ != '\t';
  while (!left_.empty() && (left_.front() == ' ' || (tabs && left_.front() == '\t'))) {
    left_.remove_prefix(1);
  }
}

// Takes a field from its opening quote to the closing one, which a doubled quote is not.
bool FieldScanner::TakeQuoted(Field& field) {
  std::size_t quote = left_.find('"', 1);
  while (quote != std::string_view::npos && left_.substr(quote + 1).starts_with('"')) {
    quote = left_.find('"', quote + 2);
  }
  if (quote == std::string_view::npos) {
    fault_ = "the quote at the beginning of a field is not closed";
    return false;
  }
  field = {left_.substr(0, quote + 1), Trimmed(left_.substr(1, quote - 1)), true};
  left_.remove_prefix(quote + 1);
  const bool blank = !left_.empty() && IsBlank(left_.front());
  SkipBlanks();
  if (!left_.empty() && left_.front() != separator_ && !(separator_ == ' ' && blank)) {
    fault_ = "text after the closing quote of a field";
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
