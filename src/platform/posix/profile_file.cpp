#include "platform/posix/profile_file.h"

#include "platform/ascii.h"

namespace latigo {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view Blanks = " \t\r\v\f";

std::string_view Unquoted(std::string_view value) {
  if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front()) {
    return value.substr(1, value.size() - 2);
  }
  return value;
}

void Classify(std::string_view text, ProfileLine& line) {
  line.is = ProfileLine::Is::Other;
  text = Trimmed(text);
  if (text.empty() || text.front() == ';' || text.find('\0') != std::string_view::npos) {
    return;
  }
  if (text.front() == '[') {
    line.is = ProfileLine::Is::Section;
    line.name = Trimmed(text.substr(1, text.find(']') - 1));
    return;
  }
  if (const std::size_t equals = text.find('='); equals != std::string_view::npos) {
    line.is = ProfileLine::Is::Key;
    line.name = Trimmed(text.substr(0, equals));
    line.value = Unquoted(Trimmed(text.substr(equals + 1)));
  }
}

std::string_view LineEnd(std::string_view bytes) {
  const std::size_t feed = bytes.find('\n');
  return feed != std::string_view::npos && feed > 0 && bytes[feed - 1] == '\r' ? "\r\n" : "\n";
}

std::string Replaced(std::string_view bytes, std::size_t begin, std::size_t end, std::string_view by) {
  return std::string(bytes.substr(0, begin)).append(by).append(bytes.substr(end));
}

}  // namespace

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(Blanks);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

ProfileLines::ProfileLines(std::string_view bytes)
    : bytes_(bytes), place_(bytes.starts_with(ByteOrderMark) ? ByteOrderMark.size() : 0) {}

bool ProfileLines::Next(ProfileLine& line) {
  if (place_ >= bytes_.size()) {
    return false;
  }
  line.begin = place_;
  const std::size_t feed = bytes_.find('\n', place_);
  place_ = line.end = feed == std::string_view::npos ? bytes_.size() : feed + 1;
  const std::size_t length = (feed == std::string_view::npos ? bytes_.size() : feed) - line.begin;
  Classify(bytes_.substr(line.begin, length), line);
  return true;
}

bool ProfileLines::ToSection(std::string_view section, ProfileLine& head) {
  while (Next(head)) {
    if (head.is == ProfileLine::Is::Section && EqualIgnoringCase(head.name, section)) {
      return true;
    }
  }
  return false;
}

bool ProfileLines::NextKey(ProfileLine& key) {
  while (Next(key) && key.is != ProfileLine::Is::Section) {
    if (key.is == ProfileLine::Is::Key) {
      return true;
    }
  }
  return false;
}

std::optional<std::string_view> ProfileValue(std::string_view bytes, std::string_view section, std::string_view key) {
  ProfileLines lines(bytes);
  ProfileLine line;
  if (lines.ToSection(Trimmed(section), line)) {
    while (lines.NextKey(line)) {
      if (EqualIgnoringCase(line.name, Trimmed(key))) {
        return line.value;
      }
    }
  }
  return std::nullopt;
}

std::string ProfileEdited(std::string_view bytes, std::string_view section, std::optional<std::string_view> key,
                          std::optional<std::string_view> value) {
  section = Trimmed(section);
  key = key ? std::optional(Trimmed(*key)) : key;
  const std::string_view eol = LineEnd(bytes);
  const std::string_view before = bytes.empty() || bytes.back() == '\n' ? "" : eol;
  std::string entry;
  if (key && value) {
    entry.append(*key).append("=").append(*value).append(eol);
  }

  ProfileLines lines(bytes);
  ProfileLine line;
  if (!lines.ToSection(section, line)) {
    if (entry.empty()) {
      return std::string(bytes);
    }
    return std::string(bytes).append(before).append("[").append(section).append("]").append(eol).append(entry);
  }
  const std::size_t head = line.begin;
  std::size_t bodyEnd = line.end;
  std::size_t lastEntry = line.end;  // a new key goes behind the last one
  while (lines.Next(line) && line.is != ProfileLine::Is::Section) {
    if (key && line.is == ProfileLine::Is::Key && EqualIgnoringCase(line.name, *key)) {
      return Replaced(bytes, line.begin, line.end, entry);
    }
    bodyEnd = line.end;
    lastEntry = line.is == ProfileLine::Is::Key ? line.end : lastEntry;
  }
  if (!key) {
    return Replaced(bytes, head, bodyEnd, "");
  }
  if (entry.empty()) {
    return std::string(bytes);
  }
  return Replaced(bytes, lastEntry, lastEntry, lastEntry == bytes.size() ? std::string(before) + entry : entry);
}

}  // namespace latigo
