// Files by path, read by position.
#pragma once

#include <cstdint>

namespace latigo {

// A file for reading in binary. Every read names its position and takes just the bytes asked for, so a process made by
// fork may read beside its parent.
class InputFile {
 public:
  InputFile() = default;
  ~InputFile() { Close(); }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  // Closes the file before and opens another. Elsewhere than on Windows backslashes in the path are taken as slashes.
  // Returns false if there is no such regular file or it cannot be opened.
  bool Open(const char* path);
  void Close();

  // Reads `size` bytes from a position in bytes. Returns false if they cannot all be read; the buffer is then
  // undefined.
  bool ReadAt(std::int64_t position, void* buffer, std::uint32_t size) const;

 private:
#if defined(_WIN32)
  void* handle_ = nullptr;
#else
  int descriptor_ = -1;
#endif
};

// Removes a file; the path is taken as above.
void RemoveFile(const char* path);

}  // namespace latigo
