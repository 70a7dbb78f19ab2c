// A profile file that is read many times in a row.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace latigo {

// While it lives, the profile services give this thread the values of a section as it was when it was made, without
// reading the file again. On Windows the system does so itself.
class ProfileSnapshot {
 public:
  ProfileSnapshot(const char* fileName, const char* section);
  ~ProfileSnapshot();
  ProfileSnapshot(const ProfileSnapshot&) = delete;
  ProfileSnapshot& operator=(const ProfileSnapshot&) = delete;

  bool IsOf(std::string_view fileName, std::string_view section) const {
    return fileName == fileName_ && section == section_;
  }
  // The value of a key, or null.
  const std::string_view* Value(std::string_view key) const;

 private:
  struct Entry {
    std::string_view key, value;
  };

  std::string fileName_;
  std::string bytes_;
  std::string section_;
  std::vector<Entry> entries_;
};

}  // namespace latigo
