#include "frame/profile.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "platform/ascii.h"
#include "platform/c_numbers.h"
#include "platform/files.h"
#include "platform/platform.h"

namespace latigo {

namespace {
constexpr std::int32_t KeyListSize = 2048;
}

Profile::~Profile() {
  if (DeleteOnClose) {
    RemoveFile(FileName.c_str());
  }
}

std::int32_t Profile::GetString(char* buffer, std::int32_t size, const char* key, const char* section,
                                const char* defaultText) const {
  return static_cast<std::int32_t>(GetPrivateProfileStringA(section, key, defaultText, buffer,
                                                            static_cast<DWORD>(std::max(size, 0)), FileName.c_str()));
}

bool Profile::WriteString(const char* key, const char* value, const char* section) {
  return WritePrivateProfileStringA(section, key, value, FileName.c_str()) != 0;
}

void Profile::CopySection(const Profile& source, const char* section, const char* targetSection) {
  if (targetSection == nullptr) {
    targetSection = section;
  }
  WriteString(nullptr, nullptr, targetSection);
  const auto keys = std::make_unique<char[]>(KeyListSize);
  source.ListKeys(keys.get(), KeyListSize, section);
  for (const char* key = keys.get(); *key != '\0'; key += std::strlen(key) + 1) {
    char value[256];
    source.GetString(value, sizeof value, key, section, "");
    WriteString(key, value, targetSection);
  }
}

bool Profile::HasSection(const char* section) const {
  char keys[256];
  return ListKeys(keys, sizeof keys, section) != 0;
}

std::int32_t Profile::ListKeys(char* buffer, std::int32_t size, const char* section) const {
  if (GetString(buffer, size, nullptr, section, "") == 0) {
    buffer[0] = buffer[1] = '\0';
    return 0;
  }
  std::int32_t count = 0;
  for (const char* key = buffer; *key != '\0'; key += std::strlen(key) + 1) {
    ++count;
  }
  return count;
}

std::int32_t Profile::ListSections(char* buffer, std::int32_t size) const {
  return static_cast<std::int32_t>(
      GetPrivateProfileSectionNamesA(buffer, static_cast<DWORD>(std::max(size, 0)), FileName.c_str()));
}

Profile::Value Profile::Read(const char* key, const char* section) const {
  Value value{};
  GetString(value.text, sizeof value.text, key, section, "");
  return value;
}

bool Profile::HasKey(const char* key, const char* section) const {
  return Read(key, section).text[0] != '\0';
}

std::int32_t Profile::GetInt(const char* key, const char* section, std::int32_t defaultValue) const {
  const Value value = Read(key, section);
  return value.text[0] != '\0' ? CInt(value.text) : defaultValue;
}

double Profile::GetDouble(const char* key, const char* section, double defaultValue) const {
  const Value value = Read(key, section);
  return value.text[0] != '\0' ? CDouble(value.text) : defaultValue;
}

bool Profile::GetBool(const char* key, const char* section, bool defaultValue) const {
  const Value value = Read(key, section);
  if (value.text[0] == '\0') {
    return defaultValue;
  }
  for (const char* yes : {"on", "yes", "true"}) {
    if (EqualIgnoringCase(value.text, yes)) {
      return true;
    }
  }
  return CInt(value.text) == 1;
}

}  // namespace latigo
