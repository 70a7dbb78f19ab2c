#include "errors/log_line.h"

#include <cstdarg>
#include <cstdio>

#include "platform/cancellation.h"
#include "platform/platform.h"

namespace latigo {

void LogLine(const char* format, ...) {
  char message[480];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(message, sizeof message, format, arguments);
  va_end(arguments);

  char line[512];
  std::snprintf(line, sizeof line, "[%x] %s\n", static_cast<unsigned>(GetCurrentThreadId()), message);
  const CancellationDisabled guard;
  OutputDebugStringA(line);
}

}  // namespace latigo
