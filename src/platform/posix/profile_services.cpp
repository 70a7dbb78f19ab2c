// The services of profile files. Each call reads the whole file. A file that is not regular, exceeds the size limit, or
// yields fewer bytes than its size has no values; and it is not written, because that would replace unread contents.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <utility>

#include "platform/ascii.h"
#include "platform/platform.h"
#include "platform/posix/native_file.h"
#include "platform/posix/profile_file.h"
#include "platform/profile_snapshot.h"

namespace latigo {
namespace {

constexpr std::size_t SizeLimit = 16U << 20U;  // bytes

struct ProfileBytes {
  std::string bytes;
  bool known = false;  // these are all bytes of the file; true for a file that does not exist
};

ProfileBytes ReadProfile(const NativePath& path) {
  const KeptErrno kept;
  ProfileBytes whole;
  const int file = OpenRegularFile(path);
  struct stat status;
  if (file < 0) {
    // A dangling link is not a missing file.
    whole.known = errno == ENOENT && lstat(path.c_str(), &status) != 0;
    return whole;
  }
  const auto close = [](const int* descriptor) { ::close(*descriptor); };
  const std::unique_ptr<const int, decltype(close)> closer(&file, close);
  if (fstat(file, &status) != 0 || static_cast<std::size_t>(status.st_size) > SizeLimit) {
    return whole;
  }
  std::string& bytes = whole.bytes;
  bytes.resize(static_cast<std::size_t>(status.st_size));
  std::size_t length = 0;
  while (length < bytes.size()) {
    const ssize_t more = Uninterrupted([&] { return read(file, bytes.data() + length, bytes.size() - length); });
    if (more <= 0) {
      return {};
    }
    length += static_cast<std::size_t>(more);
  }
  whole.known = true;
  return whole;
}

// Sets owner, group and mode of a new file to those of the file that it replaces. Without the right to change the owner
// the caller owns it, and nobody gets more access than before.
bool TakeOver(int file, const struct stat& old) {
  mode_t mode = old.st_mode & 07777;
  if (fchown(file, old.st_uid, old.st_gid) != 0) {
    mode &= 0777;
    if (fchown(file, static_cast<uid_t>(-1), old.st_gid) != 0) {
      // Another group gets the rights that both the old group and all others had.
      mode = (mode & 0707) | (mode & mode << 3 & 070);
    }
  }
  return fchmod(file, mode) == 0;
}

// Writes the directory entry of a new file to the disk, if the folder can be opened and the file system supports it.
// False means that after a crash the old file may reappear.
bool SyncFolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
  const int file = Uninterrupted([&] { return open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
  if (file < 0) {
    return true;
  }
  const bool done = Uninterrupted([&] { return fsync(file); }) == 0 || errno == EINVAL;
  close(file);
  return done;
}

// Writes a new file beside the old one and renames it, so a crash leaves either the old file or the new one. A file
// without write permission is not replaced.
bool ReplaceFile(const NativePath& path, std::string_view bytes) {
  static std::atomic<unsigned> counter = 0;
  struct stat old;
  const bool exists = stat(path.c_str(), &old) == 0;
  if (exists ? faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0 : errno != ENOENT) {
    return false;
  }
  char resolved[PATH_MAX];  // a link is kept, its target replaced
  if (exists && realpath(path.c_str(), resolved) == nullptr) {
    return false;
  }
  const std::string target = exists ? resolved : path.c_str();
  const std::string beside = target + "." + std::to_string(getpid()) + "-" + std::to_string(counter++) + ".new";
  const int file = Uninterrupted(
      [&] { return open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, exists ? 0600 : 0666); });
  if (file < 0) {
    return false;
  }
  bool done = !exists || TakeOver(file, old);
  done = done && WriteAll(file, bytes) && Uninterrupted([&] { return fsync(file); }) == 0;
  done = close(file) == 0 && done;
  if (!done || std::rename(beside.c_str(), target.c_str()) != 0) {
    unlink(beside.c_str());
    return false;
  }
  return SyncFolderOf(target);
}

bool HasLineBreak(const char* text) {
  return text != nullptr && std::strpbrk(text, "\r\n") != nullptr;
}

std::string_view OrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

std::optional<std::string_view> Optional(const char* text) {
  return text != nullptr ? std::optional<std::string_view>(text) : std::nullopt;
}

}  // namespace

ProfileSnapshot::ProfileSnapshot(const char* fileName, const char* section, std::vector<std::string_view> keys)
    : section_(section),
      bytes_(ReadProfile(NativePath(fileName)).bytes),
      keys_(std::move(keys)),
      values_(keys_.size()) {
  std::vector<bool> found(keys_.size());
  ProfileLines lines(bytes_);
  ProfileLine line;
  if (lines.ToSection(Trimmed(section_), line)) {
    while (lines.NextKey(line)) {
      const std::size_t place = PlaceOf(line.name);
      if (place < keys_.size() && !found[place]) {
        found[place] = true;
        values_[place] = line.value;
      }
    }
  }
}

std::size_t ProfileSnapshot::PlaceOf(std::string_view key) const {
  const auto same = [key](std::string_view known) { return EqualIgnoringCase(known, key); };
  return static_cast<std::size_t>(std::find_if(keys_.begin(), keys_.end(), same) - keys_.begin());
}

std::optional<std::uint32_t> ProfileSnapshot::Copy(const char* section, const char* key, const char* defaultText,
                                                   char* buffer, std::uint32_t size) const {
  if (section == nullptr || section != section_ || key == nullptr || PlaceOf(key) == keys_.size()) {
    return std::nullopt;
  }
  return CopyText(values_[PlaceOf(key)].value_or(OrEmpty(defaultText)), buffer, size);
}

}  // namespace latigo

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* defaultText, char* buffer, DWORD size,
                               const char* fileName) {
  using namespace latigo;
  if (section == nullptr) {
    return GetPrivateProfileSectionNamesA(buffer, size, fileName);
  }
  const std::string bytes = ReadProfile(NativePath(fileName)).bytes;
  return key != nullptr ? CopyText(ProfileValue(bytes, section, key).value_or(OrEmpty(defaultText)), buffer, size)
                        : ListKeys(bytes, section, buffer, size);
}

DWORD GetPrivateProfileSectionNamesA(char* buffer, DWORD size, const char* fileName) {
  using namespace latigo;
  return ListSections(ReadProfile(NativePath(fileName)).bytes, buffer, size);
}

BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* value, const char* fileName) {
  using namespace latigo;
  if (section == nullptr || HasLineBreak(section) || HasLineBreak(key) || HasLineBreak(value)) {
    return 0;
  }
  const KeptErrno kept;
  try {
    const NativePath path(fileName);
    const ProfileBytes whole = ReadProfile(path);
    const std::optional<std::string> edited = ProfileEdited(whole.bytes, section, Optional(key), Optional(value));
    if (!whole.known || !edited || edited->size() > SizeLimit) {
      return 0;
    }
    return *edited == whole.bytes || ReplaceFile(path, *edited) ? 1 : 0;
  } catch (const std::exception&) {
    return 0;
  }
}
