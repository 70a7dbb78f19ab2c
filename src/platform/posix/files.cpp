#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "platform/cancellation.h"
#include "platform/posix/native_file.h"

namespace latigo {

NativePath::NativePath(const char* path) {
  const std::size_t length = std::strlen(path);
  if (length >= sizeof path_) {
    path_[0] = '\0';
    return;
  }
  std::replace_copy(path, path + length + 1, path_, '\\', '/');
}

int OpenRegularFile(const NativePath& path) {
  const int file = Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); });
  struct stat status;
  if (file >= 0 && (fstat(file, &status) != 0 || !S_ISREG(status.st_mode))) {
    close(file);
    return -1;
  }
  return file;
}

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = Uninterrupted([&] { return write(file, bytes.data(), bytes.size()); });
    if (written <= 0) {
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool InputFile::Open(const char* path) {
  Close();
  const KeptErrno kept;
  const CancellationDisabled guard;
  descriptor_ = OpenRegularFile(NativePath(path));
  return descriptor_ >= 0;
}

void InputFile::Close() {
  if (descriptor_ >= 0) {
    const KeptErrno kept;
    const CancellationDisabled guard;
    close(descriptor_);
    descriptor_ = -1;
  }
}

bool InputFile::ReadAt(std::int64_t position, void* buffer, std::uint32_t size) const {
  const KeptErrno kept;
  const CancellationDisabled guard;
  auto* to = static_cast<char*>(buffer);
  for (std::size_t left = size; left > 0;) {
    const ssize_t count = Uninterrupted([&] { return pread(descriptor_, to, left, position); });
    if (count <= 0) {
      return false;
    }
    to += count;
    position += count;
    left -= static_cast<std::size_t>(count);
  }
  return true;
}

void RemoveFile(const char* path) {
  std::remove(NativePath(path).c_str());
}

}  // namespace latigo
