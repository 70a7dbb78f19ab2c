// The text of a profile (INI) file: sections in brackets, keys with values.
//
// Names compare without case. The first section of a name counts, and the first key of a name in it. Blanks around
// names and values do not count, nor does one pair of quotes around a value. A line that begins with `;` is a comment,
// and one with a NUL is nothing. A line without `=` is a key without a value: it is not listed and gives the default.
// Lines end with LF, CRLF or CR, and a UTF-8 byte order mark may stand in front. A section's name reaches to the last
// closing bracket of its line. What stands before the first section is the section with the empty name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace latigo {

struct ProfileLine {
  enum class Is { Section, Key, Other };
  Is is = Is::Other;
  std::string_view name;                  // of the section or the key
  std::optional<std::string_view> value;  // of the key
  std::size_t begin = 0;                  // where the line begins in the file
  std::size_t end = 0;                    // where the next one does
};

// Walks the lines of a file.
class ProfileLines {
 public:
  explicit ProfileLines(std::string_view bytes);

  // Gives false at the end of the file.
  bool Next(ProfileLine& line);
  // At the beginning: goes on to the head of a section; false if the file has none of that name.
  bool ToSection(std::string_view section, ProfileLine& head);
  // Goes on to the next key of the section at hand; false at its end.
  bool NextKey(ProfileLine& key);

 private:
  std::string_view bytes_;
  std::size_t place_;
};

// A text without the blanks around it.
std::string_view Trimmed(std::string_view text);

// The value of a key, or nothing.
std::optional<std::string_view> ProfileValue(std::string_view bytes, std::string_view section, std::string_view key);

// Copies as much of a text as there is room for, with a NUL behind it; gives the number of characters.
std::uint32_t CopyText(std::string_view text, char* buffer, std::uint32_t size);

// The names of a section's keys, or of all sections, as the services give them.
std::uint32_t ListKeys(std::string_view bytes, std::string_view section, char* buffer, std::uint32_t size);
std::uint32_t ListSections(std::string_view bytes, char* buffer, std::uint32_t size);

// The bytes of the file with a value set, a key deleted (no value), or a section deleted (no key). All other lines stay
// as they are. Nothing if the value could not be read back under those names: an empty key, one with `=` in it, one
// that begins like a comment or a section. Blanks and quotes around the value are written, and reading drops them.
std::optional<std::string> ProfileEdited(std::string_view bytes, std::string_view section,
                                         std::optional<std::string_view> key, std::optional<std::string_view> value);

}  // namespace latigo
