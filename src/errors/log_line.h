// The library's only output: short lines for a debugger.
#pragma once

namespace latigo {

// Writes the calling thread's id in brackets, the message and a newline to the debug output. Arguments are as for
// printf; the line is at most 512 bytes.
[[gnu::format(printf, 1, 2)]] void LogLine(const char* format, ...);

}  // namespace latigo
