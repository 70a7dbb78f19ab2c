// A profile file that is read many times in a row.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace latigo {

// While it lives, the profile services give this thread the values of the file as it was when it was made, without
// reading it again. On Windows the system does so itself.
class ProfileSnapshot {
 public:
  explicit ProfileSnapshot(const char* fileName);
  ~ProfileSnapshot();
  ProfileSnapshot(const ProfileSnapshot&) = delete;
  ProfileSnapshot& operator=(const ProfileSnapshot&) = delete;

  // The value of a key, or null.
  const std::string_view* Value(std::string_view section, std::string_view key);
  const std::string& FileName() const { return fileName_; }

 private:
  struct Entry {
    std::string_view key, value;
  };

  std::string fileName_;
  std::string bytes_;
  std::string section_;         // that was asked for last
  std::vector<Entry> entries_;  // its keys
  bool parsed_ = false;
};

}  // namespace latigo
