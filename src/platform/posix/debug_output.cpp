// The debug output: the file named by LATIGO_DEBUG_OUTPUT, for tests and diagnosis; else standard error if a debugger
// is attached to the process; else nowhere. The file is opened for each line: the host could close a descriptor that
// stays open, and its number could then belong to one of the host's files.
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

#include "platform/platform.h"
#include "platform/posix/native_file.h"

namespace latigo {
namespace {

bool TracerInStatus() {
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

// Reading the status takes a thousand times as long as a conversion, so it is read at most once in each second of the
// coarse clock, which is cheap. A debugger that attaches later is noticed in the next second.
bool DebuggerAttached() {
  static std::atomic<std::int64_t> lastLook = -1;  // 2 x the second, + 1 if a debugger was attached
  timespec now = {};
  clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
  const std::int64_t second = now.tv_sec;
  std::int64_t look = lastLook.load(std::memory_order_relaxed);
  if (look < 0 || look / 2 != second) {
    look = second * 2 + (TracerInStatus() ? 1 : 0);
    lastLook.store(look, std::memory_order_relaxed);
  }
  return look % 2 != 0;
}

// The file named by the environment, or null. The environment is read once, for the first line, which is written when
// the library is loaded: later a host may change it in one thread while another thread's conversion fails. A program
// that runs with more rights than its user gets null.
const char* OutputPath() {
  static const char* const path = [] {
    const char* named = secure_getenv("LATIGO_DEBUG_OUTPUT");
    return named != nullptr ? strdup(named) : nullptr;
  }();
  return path;
}

// Opens or creates the file. Only regular files are accepted, and no links: a pipe would block the caller.
int OpenOutput(const char* path) {
  const int file = open(path, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
  struct stat status;
  if (file >= 0 && (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))) {
    close(file);
    return -1;
  }
  return file;
}

// While one exists, a line that cannot be written raises no signal, which would end the process: standard error may be
// a pipe without a reader, the file as long as the process may make it. A signal that the host left pending stays so.
class WriteSignalsHeld {
 public:
  WriteSignalsHeld() {
    sigset_t pending;
    sigpending(&pending);
    sigemptyset(&held_);
    for (const int each : {SIGPIPE, SIGXFSZ}) {
      if (sigismember(&pending, each) == 0) {
        sigaddset(&held_, each);
      }
    }
    pthread_sigmask(SIG_BLOCK, &held_, &host_);
  }
  ~WriteSignalsHeld() {
    constexpr timespec None = {};
    while (sigtimedwait(&held_, nullptr, &None) > 0) {
    }
    pthread_sigmask(SIG_SETMASK, &host_, nullptr);
  }
  WriteSignalsHeld(const WriteSignalsHeld&) = delete;
  WriteSignalsHeld& operator=(const WriteSignalsHeld&) = delete;

 private:
  sigset_t held_;
  sigset_t host_;
};

}  // namespace
}  // namespace latigo

void OutputDebugStringA(const char* text) {
  using namespace latigo;
  const KeptErrno kept;
  if (const char* path = OutputPath(); path != nullptr) {
    const int file = OpenOutput(path);
    if (file >= 0) {
      const WriteSignalsHeld held;
      WriteAll(file, text);
      close(file);
    }
  } else if (DebuggerAttached()) {
    const WriteSignalsHeld held;
    WriteAll(STDERR_FILENO, text);
  }
}
