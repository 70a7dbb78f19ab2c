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
  ProfileSnapshot(const char* /*fileName*/, const char* /*section*/, const std::vector<std::string_view>& /*keys*/) {}
};

#else

// While it lives, the profile services give this thread the values of some keys of a section as they were when it was
// made, without reading the file again. It holds the file once and a value for each key, however many lines there are.
class ProfileSnapshot {
 public:
  // The keys are those that will be read.
  ProfileSnapshot(const char* fileName, const char* section, std::vector<std::string_view> keys);
  ~ProfileSnapshot();
  ProfileSnapshot(const ProfileSnapshot&) = delete;
  ProfileSnapshot& operator=(const ProfileSnapshot&) = delete;

  bool Has(std::string_view fileName, std::string_view section, std::string_view key) const {
    return fileName == fileName_ && section == section_ && PlaceOf(key) < keys_.size();
  }
  // The value of a key that it has, or nothing if the section has none.
  std::optional<std::string_view> Value(std::string_view key) const { return values_[PlaceOf(key)]; }

 private:
  std::size_t PlaceOf(std::string_view key) const;

  std::string fileName_;
  std::string section_;
  std::string bytes_;
  std::vector<std::string_view> keys_;
  std::vector<std::optional<std::string_view> > values_;
};

#endif

}  // namespace latigo
