// `LastError`: the code of the last export called by this thread.
#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace latigo {

inline DWORD LastErrorSlot;

// Allocates the thread-local slot; called once, while the library loads.
inline void AllocateLastError() {
  LastErrorSlot = TlsAlloc();
}

// The slot's pointer-sized value holds the code as a number.
inline void SetLastError(std::int32_t code) noexcept {
  TlsSetValue(LastErrorSlot, reinterpret_cast<void*>(static_cast<std::intptr_t>(code)));
}

// 0 in a thread that has called no export.
inline std::int32_t LastError() noexcept {
  return static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(TlsGetValue(LastErrorSlot)));
}

}  // namespace latigo
