// The services of profile files. A file is read whole at each call. One that is no regular file, or beyond the limit of
// size, counts as missing.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>

#include "platform/ascii.h"
#include "platform/platform.h"
#include "platform/posix/native_file.h"
#include "platform/posix/profile_file.h"
#include "platform/profile_snapshot.h"

namespace latigo {
namespace {

constexpr std::size_t SizeLimit = 16U << 20U;  // bytes

// Empty for a missing file, which has no sections.
std::string ReadProfile(const NativePath& path) {
  std::string bytes;
  const int file = OpenRegularFile(path);
  if (file < 0) {
    return bytes;
  }
  const auto close = [](const int* descriptor) { ::close(*descriptor); };
  const std::unique_ptr<const int, decltype(close)> closer(&file, close);
  struct stat status;
  if (fstat(file, &status) != 0 || static_cast<std::size_t>(status.st_size) > SizeLimit) {
    return bytes;
  }
  bytes.resize(static_cast<std::size_t>(status.st_size));
  std::size_t length = 0;
  while (length < bytes.size()) {
    const ssize_t more = read(file, bytes.data() + length, bytes.size() - length);
    if (more <= 0) {
      break;
    }
    length += static_cast<std::size_t>(more);
  }
  bytes.resize(length);
  return bytes;
}

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written <= 0) {
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

// Writes beside the file and renames, so that a crash leaves the old file or the new one.
bool ReplaceFile(const NativePath& path, std::string_view bytes) {
  static std::atomic<unsigned> counter = 0;
  struct stat status;
  const bool exists = stat(path.c_str(), &status) == 0;
  if (exists && !S_ISREG(status.st_mode)) {
    return false;
  }
  char resolved[PATH_MAX];  // a link stays a link
  const std::string target = exists && realpath(path.c_str(), resolved) != nullptr ? resolved : path.c_str();
  const std::string beside = target + "." + std::to_string(getpid()) + "-" + std::to_string(counter++) + ".new";
  const int file = open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0) {
    return false;
  }
  bool done = !exists || fchmod(file, status.st_mode & 07777) == 0;
  done = done && WriteAll(file, bytes) && fsync(file) == 0;
  done = close(file) == 0 && done;
  done = done && std::rename(beside.c_str(), target.c_str()) == 0;
  if (!done) {
    unlink(beside.c_str());
  }
  return done;
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

[[gnu::tls_model("initial-exec")]] thread_local const ProfileSnapshot* CurrentSnapshot = nullptr;

}  // namespace

ProfileSnapshot::ProfileSnapshot(const char* fileName, const char* section)
    : fileName_(fileName), bytes_(ReadProfile(NativePath(fileName))), section_(section) {
  ProfileLines lines(bytes_);
  ProfileLine line;
  if (lines.ToSection(Trimmed(section_), line)) {
    while (lines.NextKey(line)) {
      entries_.push_back({line.name, line.value});
    }
  }
  CurrentSnapshot = this;
}

ProfileSnapshot::~ProfileSnapshot() {
  CurrentSnapshot = nullptr;
}

const std::string_view* ProfileSnapshot::Value(std::string_view key) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(),
                                  [&](const Entry& entry) { return EqualIgnoringCase(entry.key, Trimmed(key)); });
  return found != entries_.end() && found->value ? &*found->value : nullptr;
}

}  // namespace latigo

DWORD GetPrivateProfileStringA(const char* section, const char* key, const char* defaultText, char* buffer, DWORD size,
                               const char* fileName) {
  using namespace latigo;
  if (section == nullptr) {
    return GetPrivateProfileSectionNamesA(buffer, size, fileName);
  }
  if (key != nullptr && CurrentSnapshot != nullptr && CurrentSnapshot->IsOf(fileName, section)) {
    const std::string_view* value = CurrentSnapshot->Value(key);
    return CopyText(value != nullptr ? *value : OrEmpty(defaultText), buffer, size);
  }
  const std::string bytes = ReadProfile(NativePath(fileName));
  return key != nullptr ? CopyText(ProfileValue(bytes, section, key).value_or(OrEmpty(defaultText)), buffer, size)
                        : ListKeys(bytes, section, buffer, size);
}

DWORD GetPrivateProfileSectionNamesA(char* buffer, DWORD size, const char* fileName) {
  using namespace latigo;
  return ListSections(ReadProfile(NativePath(fileName)), buffer, size);
}

BOOL WritePrivateProfileStringA(const char* section, const char* key, const char* value, const char* fileName) {
  using namespace latigo;
  if (section == nullptr || HasLineBreak(section) || HasLineBreak(key) || HasLineBreak(value)) {
    return 0;
  }
  try {
    const NativePath path(fileName);
    const std::string bytes = ReadProfile(path);
    const std::string edited = ProfileEdited(bytes, section, Optional(key), Optional(value));
    return edited == bytes || ReplaceFile(path, edited) ? 1 : 0;
  } catch (const std::exception&) {
    return 0;
  }
}
