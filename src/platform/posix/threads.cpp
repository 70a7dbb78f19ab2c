#include <unistd.h>

#include <atomic>

#include "platform/platform.h"

namespace latigo::posix {

thread_local constinit void* Slots[SlotCount] = {};

}  // namespace latigo::posix

namespace {
constexpr DWORD OutOfSlots = 0xFFFFFFFF;
std::atomic<DWORD> UsedSlots = 0;
}  // namespace

DWORD TlsAlloc() {
  const DWORD slot = UsedSlots++;
  return slot < latigo::posix::SlotCount ? slot : OutOfSlots;
}

DWORD GetCurrentThreadId() {
  return static_cast<DWORD>(gettid());
}
