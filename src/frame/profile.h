// `Profile`: one INI file on disk, read and written by the system's services. Constructing one does not access the
// file; a missing file yields the defaults.
#pragma once

#include <cstdint>
#include <string>

namespace latigo {

class Profile {
 public:
  explicit Profile(const char* fileName) : FileName(fileName) {}
  Profile(const Profile&) = delete;
  Profile& operator=(const Profile&) = delete;

  // Removes the file if DeleteOnClose is set.
  virtual ~Profile();

  // Copies the value of a key, or the default, cut to size - 1 characters; returns its length.
  virtual std::int32_t GetString(char* buffer, std::int32_t size, const char* key, const char* section,
                                 const char* defaultText) const;
  virtual bool WriteString(const char* key, const char* value, const char* section);

  // Replaces a section of this file by a section of another one; a null target section means the same name. Key lists
  // are cut to 2048 bytes and values to 255 characters.
  virtual void CopySection(const Profile& source, const char* section, const char* targetSection);

  // A section without keys counts as absent.
  virtual bool HasSection(const char* section) const;

  // Writes the names of a section's keys, each with its NUL, and a further NUL; returns their number. The buffer has at
  // least 2 bytes.
  virtual std::int32_t ListKeys(char* buffer, std::int32_t size, const char* section) const;
  // Writes the names of all sections in the same form; returns the number of characters.
  virtual std::int32_t ListSections(char* buffer, std::int32_t size) const;

  // Typed values. At most 79 characters of a value are read; an empty value counts as absent.
  bool HasKey(const char* key, const char* section) const;
  std::int32_t GetInt(const char* key, const char* section, std::int32_t defaultValue) const;
  double GetDouble(const char* key, const char* section, double defaultValue) const;
  // True for "on", "yes", "true" and texts that begin with the number 1.
  bool GetBool(const char* key, const char* section, bool defaultValue) const;

  const std::string FileName;
  bool DeleteOnClose = false;

 private:
  struct Value {
    char text[80];
  };
  Value Read(const char* key, const char* section) const;
};

}  // namespace latigo
