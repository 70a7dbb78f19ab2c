// Files by path, read by position.
#pragma once

#include <cstdint>

namespace latigo {

// A file opened for binary reading. Every read states its position and reads exactly the requested bytes, so a forked
// child may read at the same time as its parent.
class InputFile {
 public:
  InputFile() = default;
  ~InputFile() { Close(); }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  // Closes the previous file and opens another. Except on Windows, backslashes in the path are read as slashes.
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

// Removes a file; the path is read as above.
void RemoveFile(const char* path);

}  // namespace latigo
