// `Profile`: one INI file on disk, through the system's services. Making one does not touch the file; a file that does
// not exist gives the defaults.
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

  // Copies the value of a key, or the default, cut to size - 1 characters; gives its length.
  virtual std::int32_t GetString(char* buffer, std::int32_t size, const char* key, const char* section,
                                 const char* defaultText) const;
  virtual bool WriteString(const char* key, const char* value, const char* section);

  // Puts a section of another file in the place of one here; a null target section means the same name. A key list
  // beyond 2048 bytes and values beyond 255 characters are cut.
  virtual void CopySection(const Profile& source, const char* section, const char* targetSection);

  // A section without keys counts as absent.
  virtual bool HasSection(const char* section) const;

  // The names of a section's keys, each with its NUL, and a further NUL; gives their number. At least 2 bytes.
  virtual std::int32_t ListKeys(char* buffer, std::int32_t size, const char* section) const;
  // The names of all sections in the same form; gives the number of characters.
  virtual std::int32_t ListSections(char* buffer, std::int32_t size) const;

  // These read at most 79 characters of a value. An empty value counts as absent.
  bool HasKey(const char* key, const char* section) const;
  std::int32_t GetInt(const char* key, const char* section, std::int32_t defaultValue) const;
  double GetDouble(const char* key, const char* section, double defaultValue) const;
  // "on", "yes" and "true" are true, and so is a text that begins with the number 1.
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
