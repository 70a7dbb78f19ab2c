#include "frame/install_dir.h"

#include <cstdlib>
#include <cstring>

#include "platform/platform.h"

namespace latigo {

namespace {

constexpr DWORD DirSize = 256;

char InstallDir[DirSize];

bool ReadRegistry(const char* keyName) {
  HKEY key = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, keyName, 0, KEY_QUERY_VALUE, &key) != ERROR_SUCCESS) {
    return false;
  }
  DWORD size = DirSize;
  const LONG result = RegQueryValueExA(key, "InstallDir", nullptr, nullptr, reinterpret_cast<BYTE*>(InstallDir), &size);
  RegCloseKey(key);
  InstallDir[DirSize - 1] = '\0';
  return result == ERROR_SUCCESS;
}

bool ReadEnvironment() {
  const char* value = std::getenv("TWI_BATHYX");
  if (value == nullptr) {
    return false;
  }
  std::strncpy(InstallDir, value, DirSize - 1);  // the last byte stays NUL
  return true;
}

void TakeHostDirectory() {
  GetModuleFileNameA(nullptr, InstallDir, DirSize);
  InstallDir[DirSize - 1] = '\0';  // a truncated path may lack its NUL
  if (char* last = std::strrchr(InstallDir, '\\'); last != nullptr) {
    *last = '\0';
  }
}

}  // namespace

const char* GetInstallDir(char* buffer) {
  if (InstallDir[0] == '\0') {
    if (!ReadRegistry("SOFTWARE\\BATHYX,Inc.\\BATHYX ONE") &&
        !ReadRegistry("SOFTWARE\\Tidewrack Instruments Inc.\\BATHYX ONE") && !ReadEnvironment()) {
      TakeHostDirectory();
    }
  }
  if (buffer != nullptr) {
    std::strcpy(buffer, InstallDir);
  }
  return InstallDir;
}

bool GridFilePath(const char* value, char (&path)[256]) {
  constexpr char Folder[] = "\\datum\\";
  const char* last = std::strrchr(value, '\\');
  const char* const name = last != nullptr ? last + 1 : value;
  const char* const directory = GetInstallDir(nullptr);
  path[0] = '\0';
#if !defined(_WIN32)
  if (std::strchr(name, '/') != nullptr) {
    return false;
  }
#endif
  if (std::strlen(directory) + std::strlen(Folder) + std::strlen(name) >= sizeof path) {
    return false;
  }
  std::strcat(std::strcat(std::strcat(path, directory), Folder), name);
  return true;
}

}  // namespace latigo
