#include "platform/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

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
  const int file = Uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC); });
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

std::FILE* OpenForReading(const char* path) {
  const KeptErrno kept;
  const int descriptor = OpenRegularFile(NativePath(path));
  if (descriptor < 0) {
    return nullptr;
  }
  std::FILE* file = fdopen(descriptor, "rb");
  if (file == nullptr) {
    close(descriptor);
    return nullptr;
  }
  std::setvbuf(file, nullptr, _IONBF, 0);
  return file;
}

void RemoveFile(const char* path) {
  std::remove(NativePath(path).c_str());
}

bool SeekTo(std::FILE* file, std::int64_t position) {
  return fseeko(file, position, SEEK_SET) == 0;
}

}  // namespace latigo
