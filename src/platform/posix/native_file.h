// POSIX paths and files.
#pragma once

#include <cerrno>
#include <climits>
#include <string_view>

namespace latigo {

// A path with its backslashes as slashes. A path that is too long becomes empty, which names no file.
class NativePath {
 public:
  explicit NativePath(const char* path);
  const char* c_str() const { return path_; }

 private:
  char path_[PATH_MAX];
};

// Opens a regular file for reading and returns its descriptor, or -1. Directories, devices and pipes are refused; none
// of them blocks the caller, and no terminal becomes that of the process.
int OpenRegularFile(const NativePath& path);

// Writes all bytes to a descriptor; returns false if it cannot.
bool WriteAll(int file, std::string_view bytes);

// Repeats a call until no signal interrupts it.
template <typename Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) {
    result = call();
  }
  return result;
}

// Restores the host's errno.
class KeptErrno {
 public:
  KeptErrno() = default;
  ~KeptErrno() { errno = errno_; }
  KeptErrno(const KeptErrno&) = delete;
  KeptErrno& operator=(const KeptErrno&) = delete;

 private:
  const int errno_ = errno;
};

}  // namespace latigo
