// The operating system's services that the library uses, under their own names and signatures. On Windows they are the
// system's; elsewhere src/platform/posix/ implements what the library needs of each.
#pragma once

#if defined(_WIN32)
#if !defined(NOMINMAX)
#define NOMINMAX  // min and max are the standard library's
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
#else

#include <cstdint>

using BOOL = int;
using BYTE = unsigned char;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using HMODULE = void*;
using HKEY = void*;

inline void* const HKEY_LOCAL_MACHINE = nullptr;
inline constexpr DWORD KEY_QUERY_VALUE = 1;
inline constexpr LONG ERROR_SUCCESS = 0;

// Thread-local slots: one value per thread, 0 in a thread that has not set it. There are few slots, and none is freed.
// Every export sets one, so the access is inline and the slots use the initial-exec model: no access allocates or calls
// the run-time linker, however the library was loaded.
namespace latigo::posix {
inline constexpr DWORD SlotCount = 8;
[[gnu::tls_model("initial-exec")]] extern thread_local constinit void* Slots[SlotCount];
}  // namespace latigo::posix

DWORD TlsAlloc();
inline void* TlsGetValue(DWORD slot) {
  return slot < latigo::posix::SlotCount ? latigo::posix::Slots[slot] : nullptr;
}
inline BOOL TlsSetValue(DWORD slot, void* value) {
  if (slot >= latigo::posix::SlotCount) {
    return 0;
  }
  latigo::posix::Slots[slot] = value;
  return 1;
}

DWORD GetCurrentThreadId();

// Sends a text to the debugger: to standard error if one is attached to the process, nowhere otherwise.
void OutputDebugStringA(const char* text);

// Copies the text of a string resource, in Windows-1252 and cut to size - 1 characters, and ends it with NUL. Returns
// the number of characters copied, 0 if no text has the id.
int LoadStringA(HMODULE module, UINT id, char* buffer, int size);

// Profile (INI) files; see profile_file.h for what counts as a section and a key.
// With a key: copies its value, or the default (null is an empty text), cut to size - 1 characters, and returns the
// number of characters copied. With a null key: the names of the section's keys, each with its NUL, and a further NUL.
DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* defaultText, char* buffer, DWORD size,
                               const char* fileName);
// Sets a value, creating section and file as needed. A null value deletes the key, a null key the section.
BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* value, const char* fileName);
// The names of all sections, in the form of a key list.
DWORD GetPrivateProfileSectionNamesA(char* buffer, DWORD size, const char* fileName);

// There is no registry: both find nothing.
LONG RegOpenKeyExA(HKEY parent, const char* subKey, DWORD options, DWORD access, HKEY* result);
LONG RegQueryValueExA(HKEY key, const char* valueName, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size);
LONG RegCloseKey(HKEY key);

// The full path of the host program, with backslashes, cut to size - 1 characters.
DWORD GetModuleFileNameA(HMODULE module, char* buffer, DWORD size);

#endif
