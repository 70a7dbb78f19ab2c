#include <unistd.h>

#include <atomic>

#include "platform/platform.h"

namespace {

constexpr DWORD SlotCount = 8;
constexpr DWORD OutOfSlots = 0xFFFFFFFF;

std::atomic<DWORD> UsedSlots = 0;

// In the block that every thread has from its start: a first access allocates nothing, however the library was loaded.
[[gnu::tls_model("initial-exec")]] thread_local void* Slots[SlotCount];

}  // namespace

DWORD TlsAlloc() {
  const DWORD slot = UsedSlots++;
  return slot < SlotCount ? slot : OutOfSlots;
}

void* TlsGetValue(DWORD slot) {
  return slot < SlotCount ? Slots[slot] : nullptr;
}

BOOL TlsSetValue(DWORD slot, void* value) {
  if (slot >= SlotCount) {
    return 0;
  }
  Slots[slot] = value;
  return 1;
}

DWORD GetCurrentThreadId() {
  return static_cast<DWORD>(gettid());
}
