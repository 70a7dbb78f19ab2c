// Several keys of one profile file section, read with one access to the file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace latigo {

#if defined(_WIN32)

// Not needed: the system caches the file that was read last.
class ProfileSnapshot {
 public:
  ProfileSnapshot(const char* /*fileName*/, const char* /*section*/, const std::vector<std::string_view>& /*keys*/) {}
};

#else

// While one exists, the profile services return to this thread the values that some keys of a section had when it was
// constructed, without reading the file again. Its memory is the file's bytes and one value for each key.
class ProfileSnapshot {
 public:
  // `keys`: those that will be read.
  ProfileSnapshot(const char* fileName, const char* section, std::vector<std::string_view> keys);
  ~ProfileSnapshot();
  ProfileSnapshot(const ProfileSnapshot&) = delete;
  ProfileSnapshot& operator=(const ProfileSnapshot&) = delete;

  bool Has(std::string_view fileName, std::string_view section, std::string_view key) const {
    return fileName == fileName_ && section == section_ && PlaceOf(key) < keys_.size();
  }
  // The value of one of the keys, if the section has one.
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
