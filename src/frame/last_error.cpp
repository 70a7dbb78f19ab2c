#include "frame/last_error.h"

#include "platform/platform.h"

namespace latigo {

namespace {
DWORD Slot;
}

void AllocateLastError() {
  Slot = TlsAlloc();
}

// The slot holds a pointer-sized value; the code travels in it as a number.
void SetLastError(std::int32_t code) noexcept {
  TlsSetValue(Slot, reinterpret_cast<void*>(static_cast<std::intptr_t>(code)));
}

std::int32_t LastError() noexcept {
  return static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(TlsGetValue(Slot)));
}

}  // namespace latigo
