// The text of a profile (INI) file: sections in brackets, keys with values.
//
// - Names compare without case. Of several sections with one name the first counts, and likewise of keys.
// - Blanks around names and values are dropped, and one pair of quotes around a value.
// - A line that begins with `;` is a comment; a line that contains a NUL is ignored.
// - A line without `=` is a key without a value: it is not listed, and reading it returns the default.
// - Lines end with LF, CRLF or CR. A UTF-8 byte order mark at the start is skipped.
// - A section's name extends to the last closing bracket of its line. Lines before the first section belong to the
//   section with the empty name.
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
  std::size_t begin = 0;                  // offset of the line in the file
  std::size_t end = 0;                    // offset of the next line
};

// Walks the lines of a file.
class ProfileLines {
 public:
  explicit ProfileLines(std::string_view bytes);

  // Returns false at the end of the file.
  bool Next(ProfileLine& line);
  // Called first: moves to the head of a section; returns false if the file has none of that name.
  bool ToSection(std::string_view section, ProfileLine& head);
  // Moves to the next key of the current section; returns false at its end.
  bool NextKey(ProfileLine& key);

 private:
  std::string_view bytes_;
  std::size_t place_;
};

// A text without the blanks around it.
std::string_view Trimmed(std::string_view text);

// The value of a key, if there is one.
std::optional<std::string_view> ProfileValue(std::string_view bytes, std::string_view section, std::string_view key);

// Copies a text, cut to size - 1 characters, and ends it with NUL; returns the number of characters copied.
std::uint32_t CopyText(std::string_view text, char* buffer, std::uint32_t size);

// Write the names of a section's keys, or of all sections, in the form of the system's services.
std::uint32_t ListKeys(std::string_view bytes, std::string_view section, char* buffer, std::uint32_t size);
std::uint32_t ListSections(std::string_view bytes, char* buffer, std::uint32_t size);

// The bytes of the file with a value set, a key deleted (no value), or a section deleted (no key); all other lines are
// unchanged. No result if the value could not be read under these names: an empty key, a key that contains `=`, or one
// that begins like a comment or a section. Blanks and quotes around the value are written, and dropped when read.
std::optional<std::string> ProfileEdited(std::string_view bytes, std::string_view section,
                                         std::optional<std::string_view> key, std::optional<std::string_view> value);

}  // namespace latigo
