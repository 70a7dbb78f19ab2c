// A profile file that is read many times in a row.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace latigo {

#if defined(_WIN32)

// The system keeps the file that was read last.
class ProfileSnapshot {
 public:
  ProfileSnapshot(const char* /*fileName*/, const char* /*section*/) {}
};

#else

// While it lives, the profile services give this thread the values of a section as it was when it was made, without
// reading the file again.
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
    std::string_view key;
    std::optional<std::string_view> value;
  };

  std::string fileName_;
  std::string bytes_;
  std::string section_;
  std::vector<Entry> entries_;
};

#endif

}  // namespace latigo
