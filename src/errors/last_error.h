// `LastError`: the code that the last export left on the calling thread.
#pragma once

#include <cstdint>

#include "platform/platform.h"

namespace latigo {

inline DWORD LastErrorSlot;

// Takes the thread-local slot; once, while the library loads.
inline void AllocateLastError() {
  LastErrorSlot = TlsAlloc();
}

// The slot holds a pointer-sized value; the code travels in it as a number.
inline void SetLastError(std::int32_t code) noexcept {
  TlsSetValue(LastErrorSlot, reinterpret_cast<void*>(static_cast<std::intptr_t>(code)));
}

// 0 in a thread that has called nothing.
inline std::int32_t LastError() noexcept {
  return static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(TlsGetValue(LastErrorSlot)));
}

}  // namespace latigo
