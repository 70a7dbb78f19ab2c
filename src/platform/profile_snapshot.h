// One section of a profile file, for a reader that asks for many of its values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace latigo {

#if defined(_WIN32)

// The system caches the file that was read last, so each value is read by its service.
class ProfileSnapshot {
 public:
  ProfileSnapshot(const char* /*fileName*/, const char* /*section*/, const std::vector<std::string_view>& /*keys*/) {}
  std::optional<std::uint32_t> Copy(const char* /*section*/, const char* /*key*/, const char* /*defaultText*/,
                                    char* /*buffer*/, std::uint32_t /*size*/) const {
    return std::nullopt;
  }
};

#else

// The values of some keys of a section, from one access to the file. Its memory is the file's bytes and one value for
// each key, for any number of lines.
class ProfileSnapshot {
 public:
  ProfileSnapshot(const char* fileName, const char* section, std::vector<std::string_view> keys);
  // The values refer to the bytes.
  ProfileSnapshot(const ProfileSnapshot&) = delete;
  ProfileSnapshot& operator=(const ProfileSnapshot&) = delete;

  // Like GetPrivateProfileStringA, for this section and these keys; no result for others.
  std::optional<std::uint32_t> Copy(const char* section, const char* key, const char* defaultText, char* buffer,
                                    std::uint32_t size) const;

 private:
  std::size_t PlaceOf(std::string_view key) const;

  std::string section_;
  std::string bytes_;
  std::vector<std::string_view> keys_;
  std::vector<std::optional<std::string_view> > values_;
};

#endif

}  // namespace latigo
