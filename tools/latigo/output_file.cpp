#include "output_file.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>

#if defined(_WIN32)
#include <io.h>
#include <sys/stat.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

#include "error_text.h"
#include "streams.h"

namespace latigo::cli {

namespace {

namespace fs = std::filesystem;

constexpr int Output = 1;  // the file number of standard output

// One at a time: the handler of signals needs the path.
fs::path Target;     // the file to be replaced
fs::path Temporary;  // empty without one

#if defined(_WIN32)
constexpr std::array Signals = {SIGINT, SIGTERM, SIGBREAK};
constexpr const wchar_t* NullDevice = L"NUL";

int OpenNew(const fs::path& path, bool) {
  return _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
}
int OpenOld(const fs::path& path) {
  return _wopen(path.c_str(), _O_WRONLY | _O_BINARY);
}
bool MayWrite(const fs::path& path) {
  return _waccess(path.c_str(), 2) == 0;
}
bool WriteToDisk() {
  return _commit(Output) == 0;
}
void KeepMode(const fs::path&) {}
int Close(int file) {
  return _close(file);
}
int Duplicate(int file) {
  return _dup(file);
}
int Duplicate(int file, int as) {
  return _dup2(file, as);
}
void Remove(const fs::path& path) {
  _wunlink(path.c_str());
}
#else
constexpr std::array Signals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU, SIGXFSZ};
constexpr const char* NullDevice = "/dev/null";

// A file that replaces another is closed to others until it has the other's mode.
int OpenNew(const fs::path& path, bool replaces) {
  return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, replaces ? 0600 : 0666);
}
int OpenOld(const fs::path& path) {
  return open(path.c_str(), O_WRONLY | O_CLOEXEC);
}
bool MayWrite(const fs::path& path) {
  return access(path.c_str(), W_OK) == 0;
}
bool WriteToDisk() {
  return fsync(Output) == 0;
}
void KeepMode(const fs::path& of) {
  struct stat old {};
  if (stat(of.c_str(), &old) == 0) {
    (void)!fchown(Output, old.st_uid, old.st_gid);  // only root may
    fchmod(Output, old.st_mode & 07777U);
  }
}
int Close(int file) {
  return close(file);
}
int Duplicate(int file) {
  return dup(file);
}
int Duplicate(int file, int as) {
  return dup2(file, as);
}
void Remove(const fs::path& path) {
  unlink(path.c_str());
}
#endif

void RemoveAndEnd(int signal) {
  Close(Output);  // an open file of Windows cannot be removed
  Remove(Temporary);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

void HandleSignals() {
  for (const int signal : Signals) {
    if (std::signal(signal, RemoveAndEnd) == SIG_IGN) {  // by nohup, for instance
      std::signal(signal, SIG_IGN);
    }
  }
}

fs::path NewPath(const fs::path& target) {
  std::random_device random;
  char name[32];
  std::snprintf(name, sizeof name, ".latigo-%08x%08x", random(), random());
  return target.parent_path() / name;
}

}  // namespace

#if defined(_WIN32)
void RequireOtherOutput(const std::vector<std::string>&) {}  // which has no path
#else
void RequireOtherOutput(const std::vector<std::string>& inputs) {
  constexpr const char* StandardOutput = "/dev/stdout";
  std::error_code failure;
  for (const std::string& input : inputs) {
    if (fs::is_regular_file(StandardOutput, failure) && fs::equivalent(StandardOutput, input, failure)) {
      throw UsageError((input == "/dev/stdin" ? "standard input" : input) +
                       ": is the output of this command too; choose another output");
    }
  }
}
#endif

OutputFile::OutputFile(const std::string& path, const std::vector<std::string>& inputs) : name_(path) {
  std::error_code failure;
  Target = NativePath(path);
  const fs::path end = fs::canonical(Target, failure);
  Target = failure ? Target : end;  // a link stays one
  for (const std::string& input : inputs) {
    if (fs::equivalent(Target, NativePath(input), failure)) {
      throw UsageError(path + ": is read by this command and would be lost; choose another output");
    }
  }
  const fs::file_status old = fs::status(Target, failure);
  if (fs::is_directory(old)) {
    throw UsageError(path + ": is a directory");
  }
  if (fs::exists(old) && !MayWrite(Target)) {
    ThrowSystemError(path);
  }
  std::fflush(stdout);
  const bool direct = fs::exists(old) && !fs::is_regular_file(old);
  const fs::path written = direct ? Target : NewPath(Target);
  const int file = direct ? OpenOld(Target) : OpenNew(written, fs::exists(old));
  if (file < 0) {
    ThrowSystemError(path);
  }
  standardOutput_ = Duplicate(Output);
  if (!direct) {
    Temporary = written;
    HandleSignals();
  }
  Redirect(file);
  SetOutputName(path);
}

// Closes what standard output was.
void OutputFile::Redirect(int to) {
  if (Duplicate(to, Output) < 0) {
    Close(Output);
  }
  Close(to);
}

OutputFile::~OutputFile() {
  if (!committed_) {
    std::fflush(stdout);
    Redirect(OpenOld(NullDevice));  // for what cannot be written and stays in the buffer until the program ends
    if (!Temporary.empty()) {
      Remove(Temporary);
    }
  }
  Temporary.clear();
  SetOutputName({});
}

void OutputFile::Commit() {
  FlushOutput();
  if (!Temporary.empty()) {
    KeepMode(Target);
    if (!WriteToDisk()) {
      ThrowSystemError(name_);
    }
  }
  Redirect(standardOutput_);
  std::error_code failure;
  if (!Temporary.empty()) {
    fs::rename(Temporary, Target, failure);
  }
  if (failure) {
    throw UsageError(name_ + ": cannot be replaced: " + failure.message());
  }
  committed_ = true;
}

}  // namespace latigo::cli
