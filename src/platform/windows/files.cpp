#include "platform/files.h"

#include <io.h>

#include "platform/platform.h"

namespace latigo {

std::FILE* OpenForReading(const char* path) {
  std::FILE* file = std::fopen(path, "rbN");  // N: no child process inherits it
  if (file == nullptr) {
    return nullptr;
  }
  // A device counts as no file.
  if (GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)))) != FILE_TYPE_DISK) {
    std::fclose(file);
    return nullptr;
  }
  std::setvbuf(file, nullptr, _IONBF, 0);
  return file;
}

void RemoveFile(const char* path) {
  std::remove(path);
}

bool SeekTo(std::FILE* file, std::int64_t position) {
  return fseeko64(file, position, SEEK_SET) == 0;
}

}  // namespace latigo
