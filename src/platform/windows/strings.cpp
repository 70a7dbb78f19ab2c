#include "platform/strings.h"

#include <algorithm>

namespace latigo {

// LoadStringA would convert to the code page of the process, which a host program may have set to UTF-8. The texts are
// Latin characters with the same numbers in Windows-1252 and in Unicode.
int LoadText(HMODULE module, UINT id, char* buffer, int size) {
  const wchar_t* text = nullptr;
  // With a size of 0 the pointer receives the address of the resource itself, which has no NUL at its end.
  const int length = LoadStringW(module, id, reinterpret_cast<wchar_t*>(&text), 0);
  if (length <= 0 || size <= 0) {
    return 0;
  }
  const int copied = std::min(length, size - 1);
  *std::transform(text, text + copied, buffer, [](wchar_t c) { return static_cast<char>(c); }) = '\0';
  return copied;
}

}  // namespace latigo
