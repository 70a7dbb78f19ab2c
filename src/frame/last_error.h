// `LastError`: the code that the last export left on the calling thread.
#pragma once

#include <cstdint>

namespace latigo {

// Takes the thread-local slot; once, while the library loads.
void AllocateLastError();

void SetLastError(std::int32_t code) noexcept;

// 0 in a thread that has called nothing.
std::int32_t LastError() noexcept;

}  // namespace latigo
