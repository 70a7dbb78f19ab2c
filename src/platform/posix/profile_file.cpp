#include "platform/posix/profile_file.h"

#include <algorithm>

#include "platform/ascii.h"

namespace latigo {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view Blanks = " \t\v\f\x1A";  // the last is the DOS end-of-file character
constexpr std::string_view LineBreaks = "\r\n";

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
  if (const std::size_t bracket = text.rfind(']'); text.front() == '[' && bracket != std::string_view::npos) {
    line.is = ProfileLine::Is::Section;
    line.name = Trimmed(text.substr(1, bracket - 1));
    return;
  }
  line.is = ProfileLine::Is::Key;
  const std::size_t equals = text.find('=');
  line.name = Trimmed(text.substr(0, equals));
  line.value =
      equals != std::string_view::npos ? std::optional(Unquoted(Trimmed(text.substr(equals + 1)))) : std::nullopt;
}

std::string_view LineEnd(std::string_view bytes) {
  const std::size_t feed = bytes.find('\n');
  return feed != std::string_view::npos && feed > 0 && bytes[feed - 1] == '\r' ? "\r\n" : "\n";
}

std::string Replaced(std::string_view bytes, std::size_t begin, std::size_t end, std::string_view by) {
  return std::string(bytes.substr(0, begin)).append(by).append(bytes.substr(end));
}

// A list of names, each ended by NUL, with a further NUL at the end. A list that is too long is cut and still ends with
// two NULs.
class NameList {
 public:
  NameList(char* buffer, std::uint32_t size) : buffer_(buffer), size_(size) {}

  void Add(std::string_view name) {
    if (full_ || size_ < 2) {
      return;
    }
    const std::size_t room = size_ - 1 - length_;
    full_ = name.size() + 1 > room;
    if (room == 0) {
      return;
    }
    const std::size_t taken = full_ ? room - 1 : name.size();
    name.copy(buffer_ + length_, taken);
    buffer_[length_ + taken] = '\0';
    length_ += taken + 1;
  }

  // Ends the list; returns the number of characters before the last NUL, one less if the list was cut.
  std::uint32_t End() {
    if (size_ == 0) {
      return 0;
    }
    buffer_[length_] = '\0';
    if (length_ == 0 && size_ > 1) {
      buffer_[1] = '\0';
    }
    return static_cast<std::uint32_t>(full_ ? size_ - 2 : length_);
  }

 private:
  char* buffer_;
  std::uint32_t size_;
  std::size_t length_ = 0;
  bool full_ = false;
};

std::string Edited(std::string_view bytes, std::string_view section, std::optional<std::string_view> key,
                   std::optional<std::string_view> value) {
  const std::string_view eol = LineEnd(bytes);
  const std::string_view before = bytes.empty() || LineBreaks.find(bytes.back()) != std::string_view::npos ? "" : eol;
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
  std::size_t lastEntry = line.end;  // a new key follows the last one
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
  const std::size_t end = std::min(bytes_.find_first_of(LineBreaks, place_), bytes_.size());
  const std::size_t breakLength = bytes_.substr(end).starts_with("\r\n") ? 2 : 1;
  place_ = line.end = std::min(end + breakLength, bytes_.size());
  Classify(bytes_.substr(line.begin, end - line.begin), line);
  return true;
}

bool ProfileLines::ToSection(std::string_view section, ProfileLine& head) {
  if (section.empty()) {
    head = {ProfileLine::Is::Section, {}, std::nullopt, place_, place_};
    return true;
  }
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

std::uint32_t CopyText(std::string_view text, char* buffer, std::uint32_t size) {
  if (size == 0) {
    return 0;
  }
  const std::size_t length = text.copy(buffer, size - 1);
  buffer[length] = '\0';
  return static_cast<std::uint32_t>(length);
}

std::uint32_t ListKeys(std::string_view bytes, std::string_view section, char* buffer, std::uint32_t size) {
  NameList names(buffer, size);
  ProfileLines lines(bytes);
  ProfileLine line;
  if (lines.ToSection(section, line)) {
    while (lines.NextKey(line)) {
      if (line.value && !line.name.empty()) {  // an empty name would end the list
        names.Add(line.name);
      }
    }
  }
  return names.End();
}

std::uint32_t ListSections(std::string_view bytes, char* buffer, std::uint32_t size) {
  NameList names(buffer, size);
  ProfileLines lines(bytes);
  ProfileLine line;
  while (lines.Next(line)) {
    if (line.is == ProfileLine::Is::Section && !line.name.empty()) {
      names.Add(line.name);
    }
  }
  return names.End();
}

std::optional<std::string> ProfileEdited(std::string_view bytes, std::string_view section,
                                         std::optional<std::string_view> key, std::optional<std::string_view> value) {
  section = Trimmed(section);
  key = key ? std::optional(Trimmed(*key)) : key;
  std::string edited = Edited(bytes, section, key, value);
  if (key && value && (key->empty() || ProfileValue(edited, section, *key) != Unquoted(Trimmed(*value)))) {
    return std::nullopt;
  }
  return edited;
}

}  // namespace latigo
