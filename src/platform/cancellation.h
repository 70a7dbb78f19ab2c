// Cancellation of threads.
#pragma once

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace latigo {

// While one exists, the calling thread is not cancelled inside a system call: a request waits for the caller's next
// cancellation point. Cancellation unwinds the stack by an exception that catch (...) must not stop and that must not
// leave a destructor. So every system call of the library that is a cancellation point runs under one of these.
class CancellationDisabled {
 public:
#if defined(_WIN32)
  CancellationDisabled() {}  // Windows has no cancellation points
#else
  CancellationDisabled() {
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &state_);
  }
  ~CancellationDisabled() {
    pthread_setcancelstate(state_, nullptr);
  }
  CancellationDisabled(const CancellationDisabled&) = delete;
  CancellationDisabled& operator=(const CancellationDisabled&) = delete;

 private:
  int state_ = PTHREAD_CANCEL_ENABLE;
#endif
};

}  // namespace latigo
