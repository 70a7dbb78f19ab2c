// The debug output: the file that LATIGO_DEBUG_OUTPUT names, for tests and for a look from outside; else standard error
// if a debugger is attached to the process; else nowhere. Lines are rare, so nothing is kept between them.
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "platform/platform.h"

namespace {

bool DebuggerAttached() {
  const int status = open("/proc/self/status", O_RDONLY | O_CLOEXEC);
  if (status < 0) {
    return false;
  }
  char text[2048];
  const ssize_t length = read(status, text, sizeof text);
  close(status);
  constexpr std::string_view Field = "TracerPid:\t";
  const std::string_view seen(text, length > 0 ? static_cast<std::size_t>(length) : 0);
  const std::size_t place = seen.find(Field);
  return place != std::string_view::npos && seen.substr(place + Field.size(), 1) != "0";
}

void WriteAll(int file, const char* text) {
  std::string_view left(text);
  while (!left.empty()) {
    const ssize_t written = write(file, left.data(), left.size());
    if (written <= 0) {
      return;
    }
    left.remove_prefix(static_cast<std::size_t>(written));
  }
}

}  // namespace

void OutputDebugStringA(const char* text) {
  const int savedErrno = errno;
  if (const char* path = std::getenv("LATIGO_DEBUG_OUTPUT"); path != nullptr) {
    const int file = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (file >= 0) {
      WriteAll(file, text);
      close(file);
    }
  } else if (DebuggerAttached()) {
    WriteAll(STDERR_FILENO, text);
  }
  errno = savedErrno;
}
