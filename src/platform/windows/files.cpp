#include "platform/files.h"

#include <cstdio>

#include "platform/platform.h"

namespace latigo {

bool InputFile::Open(const char* path) {
  Close();
  // Other processes may read and write the file meanwhile; no child process inherits it.
  const HANDLE file = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return false;
  }
  handle_ = file;
  // Devices are refused.
  if (GetFileType(file) != FILE_TYPE_DISK) {
    Close();
    return false;
  }
  return true;
}

void InputFile::Close() {
  if (handle_ != nullptr) {
    CloseHandle(handle_);
    handle_ = nullptr;
  }
}

bool InputFile::ReadAt(std::int64_t position, void* buffer, std::uint32_t size) const {
  auto* to = static_cast<char*>(buffer);
  while (size > 0) {
    OVERLAPPED at{};
    at.Offset = static_cast<DWORD>(position);
    at.OffsetHigh = static_cast<DWORD>(position >> 32);
    DWORD count = 0;
    if (!ReadFile(handle_, to, size, &count, &at) || count == 0) {
      return false;
    }
    to += count;
    position += count;
    size -= count;
  }
  return true;
}

void RemoveFile(const char* path) {
  std::remove(path);
}

}  // namespace latigo
