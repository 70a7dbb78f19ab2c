// Paths and files as this system has them.
#pragma once

#include <climits>

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

}  // namespace latigo
