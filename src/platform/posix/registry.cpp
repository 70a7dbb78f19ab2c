// There is no registry here, so both look-ups find nothing; and the path of the host program.
#include <unistd.h>

#include <algorithm>

#include "platform/platform.h"

namespace {
constexpr LONG FileNotFound = 2;
}

LONG RegOpenKeyExA(HKEY /*parent*/, const char* /*subKey*/, DWORD /*options*/, DWORD /*access*/, HKEY* /*result*/) {
  return FileNotFound;
}

LONG RegQueryValueExA(HKEY /*key*/, const char* /*valueName*/, DWORD* /*reserved*/, DWORD* /*type*/, BYTE* /*data*/,
                      DWORD* /*size*/) {
  return FileNotFound;
}

LONG RegCloseKey(HKEY /*key*/) {
  return ERROR_SUCCESS;
}

DWORD GetModuleFileNameA(HMODULE /*module*/, char* buffer, DWORD size) {
  if (size == 0) {
    return 0;
  }
  const ssize_t length = readlink("/proc/self/exe", buffer, size - 1);
  char* const end = buffer + std::max<ssize_t>(length, 0);
  *end = '\0';
  std::replace(buffer, end, '/', '\\');
  return static_cast<DWORD>(end - buffer);
}
