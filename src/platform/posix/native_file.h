// Paths and files as this system has them.
#pragma once

#include <cerrno>
#include <climits>
#include <string_view>

namespace latigo {

// A path with its backslashes as slashes. One that is too long comes out empty, and no file has that name.
class NativePath {
 public:
  explicit NativePath(const char* path);
  const char* c_str() const { return path_; }

 private:
  char path_[PATH_MAX];
};

// Opens a regular file for reading; gives its descriptor, or -1. A directory or a device counts as no file, and none of
// them makes the caller wait.
int OpenRegularFile(const NativePath& path);

// Writes all bytes to a descriptor; false if it does not take them.
bool WriteAll(int file, std::string_view bytes);

// Makes a call until no signal interrupts it.
template <typename Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) {
    result = call();
  }
  return result;
}

// Leaves errno to the host as it was.
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
